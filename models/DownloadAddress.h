// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace sayloft {

/// Whether a host is the machine that we run on, by name or address.
[[nodiscard]] bool isThisMachine(const QString& host);

/// Whether models may be fetched from there: over HTTPS, and over plain HTTP from this machine
/// only.
[[nodiscard]] bool mayDownloadFrom(const QUrl& url);

}  // namespace sayloft
