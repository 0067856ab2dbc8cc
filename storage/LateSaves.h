// SPDX-License-Identifier: MIT
#pragma once

#include "storage/KeptFile.h"

#include <QByteArray>

namespace sayloft {

// What a full disk, or one that is read-only, keeps from being saved is kept in memory until it can
// be. Main thread.

/// Saves the text, or has `saveWhatIsLate` do so where that is not possible now.
void saveNowOrLater(const KeptFile& file, const QByteArray& text);

/// Tries once more what was not saved; does nothing where all is.
void saveWhatIsLate();

}  // namespace sayloft
