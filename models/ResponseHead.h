// SPDX-License-Identifier: MIT
#pragma once

#include "models/LinkedEntity.h"

#include <QByteArray>
#include <QUrl>
#include <QtGlobal>

#include <curl/curl.h>

#include <optional>

namespace sayloft {

/// The value of a Content-Range header: which bytes of the file a body holds.
struct ContentRange {
    qint64 first = 0;
    qint64 last = 0;             ///< inclusive
    std::optional<qint64> size;  ///< of the whole file

    bool operator==(const ContentRange&) const = default;

    [[nodiscard]] static std::optional<ContentRange> parse(const QByteArray& value);
};

/// What a response says before its body begins, as far as a download cares.
struct ResponseHead {
    int status = 0;
    QUrl redirect;                 ///< absolute; empty unless the status sends us there
    std::optional<qint64> length;  ///< of the body, where the host tells it
    std::optional<ContentRange> range;
    QByteArray etag;
    bool isEncoded = false;  ///< the body is compressed or otherwise not the file itself
    LinkedEntity linked;

    [[nodiscard]] bool isSuccess() const { return status >= 200 && status <= 299; }

    /// Of a transfer whose headers have all come. `url` is where they came from.
    [[nodiscard]] static ResponseHead of(CURL* transfer, const QUrl& url);
};

}  // namespace sayloft
