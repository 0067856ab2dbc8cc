// SPDX-License-Identifier: MIT
#include "models/HttpFetch.h"

#include <utility>

namespace sayloft {
namespace {

constexpr qint64 bufferSize = 256 * 1024;
constexpr qsizetype longestHead = 64 * 1024;

QByteArray requestFor(const QUrl& url, const QByteArray& headers) {
    const QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    const QByteArray query = url.query(QUrl::FullyEncoded).toLatin1();
    const QString host = url.adjusted(QUrl::RemoveUserInfo).authority(QUrl::FullyEncoded);
    return "GET " + (path.isEmpty() ? "/" : path) + (url.hasQuery() ? '?' + query : QByteArray()) +
           " HTTP/1.1\r\nHost: " + host.toLatin1() +
           "\r\nUser-Agent: Sayloft\r\nAccept: */*\r\nAccept-Encoding: identity\r\n"
           "Connection: close\r\n" +
           headers + "\r\n";
}

}  // namespace

HttpFetch::HttpFetch(const QUrl& url, const QByteArray& headers, Callbacks callbacks,
                     QObject* parent)
    : QObject(parent),
      m_url(url),
      m_headers(headers),
      m_callbacks(std::move(callbacks)),
      m_buffer(bufferSize, Qt::Uninitialized) {
    const bool isSecure = url.scheme() == QStringLiteral("https");
    m_socket.setReadBufferSize(bufferSize);
    connect(&m_socket, &QSslSocket::readyRead, this, [this] { read(); });
    connect(&m_socket, &QSslSocket::errorOccurred, this,
            [this](QAbstractSocket::SocketError error) { disconnected(error); });
    connect(&m_socket, isSecure ? &QSslSocket::encrypted : &QSslSocket::connected, this,
            [this] { connected(); });
    const auto port = static_cast<quint16>(url.port(isSecure ? 443 : 80));
    if (isSecure)
        m_socket.connectToHostEncrypted(url.host(QUrl::FullyEncoded), port);
    else
        m_socket.connectToHost(url.host(QUrl::FullyEncoded), port);
}

void HttpFetch::giveUp() {
    m_isOver = true;
    m_socket.disconnect(this);
    // It may be one of its signals that has led here.
    deleteLater();
}

void HttpFetch::connected() {
    m_socket.write(requestFor(m_url, m_headers));
}

void HttpFetch::read() {
    while (!m_isOver && m_socket.bytesAvailable() > 0) {
        const qint64 count = m_socket.read(m_buffer.data(), m_buffer.size());
        if (count <= 0)
            return;
        const QByteArrayView bytes = QByteArrayView(m_buffer).first(count);
        if (m_body)
            readBody(bytes);
        else
            readHead(bytes);
    }
}

void HttpFetch::readHead(QByteArrayView bytes) {
    m_head.append(bytes);
    const qsizetype length = m_head.indexOf("\r\n\r\n");
    if (length < 0 && m_head.size() <= longestHead)
        return;
    const auto head = length < 0 ? std::nullopt : ResponseHead::parse(m_head.left(length), m_url);
    if (!head)
        return end(QStringLiteral("the host does not speak HTTP"));
    const QByteArray rest = m_head.mid(length + 4);
    m_head.clear();
    // An interim answer, which the final one follows.
    if (head->status < 200)
        return rest.isEmpty() ? void() : readHead(rest);
    m_body.emplace(*head);
    m_callbacks.onHead(*head);
    if (!m_isOver)
        readBody(rest);
}

void HttpFetch::readBody(QByteArrayView bytes) {
    const bool isWell = m_body->decode(
        bytes, [this](QByteArrayView piece) { return m_callbacks.onBody(piece) && !m_isOver; });
    if (m_isOver)
        return;
    if (!isWell)
        end(QStringLiteral("the host does not speak HTTP"));
    else if (m_body->isComplete())
        end({});
}

void HttpFetch::disconnected(QAbstractSocket::SocketError error) {
    read();
    if (m_isOver)
        return;
    const bool isTheEnd = error == QAbstractSocket::RemoteHostClosedError && m_body &&
                          m_body->endsWithTheConnection();
    end(isTheEnd ? QString() : m_socket.errorString());
}

void HttpFetch::end(const QString& error) {
    giveUp();
    m_callbacks.onEnd(error);
}

}  // namespace sayloft
