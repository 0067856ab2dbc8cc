// SPDX-License-Identifier: MIT
#include "models/HttpFetch.h"

#include "models/CurlOnEventLoop.h"
#include "models/DownloadAddress.h"

#include <utility>

namespace sayloft {
namespace {

constexpr long bufferSize = 256L * 1024;

CurlList curlList(const QList<QByteArray>& lines) {
    CurlList list;
    for (const QByteArray& line : lines) {
        curl_slist* longer = curl_slist_append(list.get(), line.constData());
        static_cast<void>(list.release());
        list.reset(longer);
    }
    return list;
}

}  // namespace

HttpFetch::HttpFetch(const QUrl& url, const QList<QByteArray>& headers, Callbacks callbacks,
                     QObject* parent)
    : QObject(parent),
      m_url(url),
      m_callbacks(std::move(callbacks)),
      m_headers(curlList(headers)),
      m_easy(curl_easy_init()) {
    setOptions(headers);
    m_loop = std::make_unique<CurlOnEventLoop>(
        m_easy.get(), [this](CURLcode result) { done(result); }, nullptr);
}

HttpFetch::~HttpFetch() = default;

void HttpFetch::setOptions(const QList<QByteArray>& headers) {
    CURL* easy = m_easy.get();
    curl_easy_setopt(easy, CURLOPT_URL,
                     m_url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment).constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Sayloft");
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // A name server that does not answer must not hold up whoever gives up.
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_BUFFERSIZE, bufferSize);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, m_error.data());
    if (!headers.isEmpty())
        curl_easy_setopt(easy, CURLOPT_HTTPHEADER, m_headers.get());
    // No proxy knows the way back to this machine.
    if (isThisMachine(m_url.host()))
        curl_easy_setopt(easy, CURLOPT_PROXY, "");
    // Whom the user trusts besides, as other programs on OpenSSL take it.
    if (const QByteArray trusted = qgetenv("SSL_CERT_FILE"); !trusted.isEmpty())
        curl_easy_setopt(easy, CURLOPT_CAINFO, trusted.constData());
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &HttpFetch::lineArrived);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &HttpFetch::bodyArrived);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
}

void HttpFetch::giveUp() {
    m_isOver = true;
    // It may be a callback of the transfer that has led here.
    deleteLater();
}

// Both tell by their result how much they have taken; anything but all of it ends the transfer.
std::size_t HttpFetch::lineArrived(char* bytes, std::size_t size, std::size_t count, void* self) {
    const std::size_t length = size * count;
    const QByteArrayView line(bytes, static_cast<qsizetype>(length));
    return static_cast<HttpFetch*>(self)->takeLine(line) ? length : 0;
}

std::size_t HttpFetch::bodyArrived(char* bytes, std::size_t size, std::size_t count, void* self) {
    auto* fetch = static_cast<HttpFetch*>(self);
    const std::size_t length = size * count;
    const QByteArrayView body(bytes, static_cast<qsizetype>(length));
    const bool isWanted = !fetch->m_isOver && fetch->m_callbacks.onBody(body);
    return isWanted && !fetch->m_isOver ? length : 0;
}

// An empty line ends the head of an answer. Interim answers come before the one that counts, and
// trailers after the body.
bool HttpFetch::takeLine(QByteArrayView line) {
    if (m_isOver)
        return false;
    if (!line.trimmed().isEmpty() || m_hasHead)
        return true;
    const ResponseHead head = ResponseHead::of(m_easy.get(), m_url);
    if (head.status < 200)
        return true;
    m_hasHead = true;
    m_callbacks.onHead(head);
    return !m_isOver;
}

void HttpFetch::done(CURLcode result) {
    if (m_isOver)
        return;
    QString error;
    if (result != CURLE_OK)
        error = QString::fromUtf8(m_error.front() == '\0' ? curl_easy_strerror(result)
                                                          : m_error.data());
    else if (!m_hasHead)
        // libcurl takes a head that breaks off for one without a body.
        error = QStringLiteral("the answer ended in its head");
    giveUp();
    m_callbacks.onEnd(error);
}

}  // namespace sayloft
