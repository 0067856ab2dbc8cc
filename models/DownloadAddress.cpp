// SPDX-License-Identifier: MIT
#include "models/DownloadAddress.h"

#include <QHostAddress>

namespace sayloft {
bool isThisMachine(const QString& host) {
    return host == QStringLiteral("localhost") || QHostAddress(host).isLoopback();
}

bool mayDownloadFrom(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty())
        return false;
    if (url.scheme() == QStringLiteral("https"))
        return true;
    return url.scheme() == QStringLiteral("http") && isThisMachine(url.host());
}

}  // namespace sayloft
