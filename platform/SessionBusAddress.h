// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace sayloft {

/// Where the user's session bus is to be found. None where there is no bus: asking for one that is
/// not there would start it, and it would outlive the program.
[[nodiscard]] std::optional<QString> sessionBusAddress();

}  // namespace sayloft
