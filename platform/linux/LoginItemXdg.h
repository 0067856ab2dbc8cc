// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"

namespace sayloft {

/// The entry in the user's autostart folder, as the Desktop Application Autostart Specification has
/// it.
class LoginItemXdg : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override;
    [[nodiscard]] std::optional<QString> setEnabled(bool enabled) override;
};

}  // namespace sayloft
