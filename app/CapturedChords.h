// SPDX-License-Identifier: MIT
#pragma once

#include "app/ChordMachine.h"
#include "storage/Config.h"

namespace sayloft {

/// Adds a chord to the list that it was captured for, at the end and unless it is there already.
void addCapturedChord(Config& config, const ChordCaptured& captured);

}  // namespace sayloft
