// SPDX-License-Identifier: MIT
#include "updates/UpdateSource.h"

namespace sayloft {

UpdateSource builtInUpdateSource() {
    return {.feed = QUrl(QStringLiteral(SAYLOFT_UPDATE_FEED)),
            .ownVersion = QStringLiteral(SAYLOFT_VERSION)};
}

}  // namespace sayloft
