// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

#include <optional>

namespace sayloft {

/// The user's session bus. None where there is no bus: asking for one that is not there would start
/// it, and it would outlive the program. Main thread.
[[nodiscard]] std::optional<QDBusConnection> sessionBus();

}  // namespace sayloft
