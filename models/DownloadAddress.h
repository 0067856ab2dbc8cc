// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

namespace sayloft {

/// Whether models may be fetched from there: over HTTPS, and over plain HTTP from this machine
/// only.
[[nodiscard]] bool mayDownloadFrom(const QUrl& url);

}  // namespace sayloft
