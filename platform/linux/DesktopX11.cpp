// SPDX-License-Identifier: MIT
#include "platform/Desktop.h"

#include "platform/linux/XcbHandles.h"

#include <QtGlobal>

namespace sayloft {

std::optional<QString> missingDesktop() {
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return QStringLiteral("no desktop here: DISPLAY is not set");
    if (!connectToXServer())
        return QStringLiteral("no desktop here: nothing answers at DISPLAY ") +
               qEnvironmentVariable("DISPLAY");
    return std::nullopt;
}

}  // namespace sayloft
