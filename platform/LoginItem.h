// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace sayloft {

/// Whether the program starts when the user logs in. Nothing is remembered: the system is asked
/// every time. Main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// Why it did not work, in the system's words; none when it did.
    [[nodiscard]] virtual std::optional<QString> setEnabled(bool enabled) = 0;

    /// To be called at every start: where a login was to start the program from a place that it has
    /// been moved away from, it starts it from the present one. The result is that of `setEnabled`.
    [[nodiscard]] virtual std::optional<QString> followProgram() = 0;
};

}  // namespace sayloft
