// SPDX-License-Identifier: MIT
#pragma once

#include "models/CurlHandles.h"
#include "models/ResponseHead.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <array>
#include <cstddef>
#include <functional>
#include <memory>

namespace sayloft {

class CurlOnEventLoop;

/// One GET over HTTP or HTTPS through libcurl. Its memory stays flat whatever comes, and a body
/// that was cut is an error. Redirects are not followed.
class HttpFetch : public QObject {
public:
    struct Callbacks {
        std::function<void(const ResponseHead&)> onHead;
        std::function<bool(QByteArrayView)> onBody;       ///< false: no more is wanted
        std::function<void(const QString& error)> onEnd;  ///< last; empty: all has come
    };

    /// `headers` are whole lines without their ends. Nothing is called back before the event loop
    /// runs, and nothing after `giveUp`.
    HttpFetch(const QUrl& url, const QList<QByteArray>& headers, Callbacks callbacks,
              QObject* parent);

    ~HttpFetch() override;
    HttpFetch(const HttpFetch&) = delete;
    HttpFetch& operator=(const HttpFetch&) = delete;

    /// Ends the connection; the object deletes itself.
    void giveUp();

private:
    static std::size_t lineArrived(char* bytes, std::size_t size, std::size_t count, void* self);
    static std::size_t bodyArrived(char* bytes, std::size_t size, std::size_t count, void* self);

    void setOptions(const QList<QByteArray>& headers);
    [[nodiscard]] bool takeLine(QByteArrayView line);
    void done(CURLcode result);

    const QUrl m_url;
    const Callbacks m_callbacks;
    std::array<char, CURL_ERROR_SIZE> m_error{};
    CurlList m_headers;
    CurlEasy m_easy;
    std::unique_ptr<CurlOnEventLoop> m_loop;
    bool m_hasHead = false;
    bool m_isOver = false;
};

}  // namespace sayloft
