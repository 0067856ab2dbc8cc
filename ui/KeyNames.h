// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Mods.h"

#include <QString>

namespace sayloft {

/// The keys of a chord as this desktop calls them: "Ctrl+Alt+Shift+Super+Fn"; "no key" for none.
[[nodiscard]] QString keyNames(Mods chord);

}  // namespace sayloft
