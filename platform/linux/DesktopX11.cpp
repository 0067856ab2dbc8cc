// SPDX-License-Identifier: MIT
#include "platform/Desktop.h"

#include "platform/linux/XcbHandles.h"

#include <QtGlobal>

namespace sayloft {

std::optional<QString> missingDesktop() {
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return QStringLiteral("needs an X server (on Wayland, Xwayland): DISPLAY is not set");
    if (!connectToXServer())
        return QStringLiteral(
                   "needs an X server (on Wayland, Xwayland): nothing answers at DISPLAY ") +
               qEnvironmentVariable("DISPLAY");
    return std::nullopt;
}

}  // namespace sayloft
