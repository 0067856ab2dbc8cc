// SPDX-License-Identifier: MIT
#pragma once

#include "models/CurlHandles.h"

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <optional>
#include <stop_token>

namespace sayloft {

/// The HTTP request that asks a speech server for the text of a recording; it can be posted several
/// times. Used by one thread at a time.
class TranscriptionRequest {
public:
    /// `wav` is the whole file.
    TranscriptionRequest(QUrl url, const QByteArray& wav);

    /// Blocks until the answer is there, `timeout` is over or `stop` is requested. The body of the
    /// answer; none unless it arrived whole, with a status of 200 to 299 and within 1 MiB.
    [[nodiscard]] std::optional<QByteArray> post(std::chrono::milliseconds timeout,
                                                 const std::stop_token& stop) const;

private:
    [[nodiscard]] CurlEasy transfer(std::chrono::milliseconds timeout) const;

    QUrl m_url;
    QByteArray m_body;
    CurlList m_headers;
};

}  // namespace sayloft
