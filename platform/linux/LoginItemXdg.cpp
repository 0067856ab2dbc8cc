// SPDX-License-Identifier: MIT
#include "platform/linux/LoginItemXdg.h"

namespace sayloft {

bool LoginItemXdg::isEnabled() const {
    return false;
}

std::optional<QString> LoginItemXdg::setEnabled(bool /*enabled*/) {
    return QStringLiteral("not supported");
}

}  // namespace sayloft
