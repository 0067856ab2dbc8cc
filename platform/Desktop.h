// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace sayloft {

/// Why the program cannot run here, in a sentence for the user; none when there is a desktop. To be
/// asked before the application object is made, which ends the process without one.
[[nodiscard]] std::optional<QString> missingDesktop();

}  // namespace sayloft
