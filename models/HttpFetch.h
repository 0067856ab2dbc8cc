// SPDX-License-Identifier: MIT
#pragma once

#include "models/BodyDecoder.h"
#include "models/ResponseHead.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QObject>
#include <QSslSocket>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace sayloft {

/// One GET on a connection of its own, over HTTP or HTTPS. Reads no more than is being taken, so
/// that its memory stays flat, and takes no body for whole that is not.
///
/// WORKAROUND: QNetworkAccessManager of Qt 6.4 now and then takes a body in chunks that was cut for
/// a whole one, and over HTTP/2 keeps in memory whatever comes.
class HttpFetch : public QObject {
public:
    struct Callbacks {
        std::function<void(const ResponseHead&)> onHead;
        std::function<bool(QByteArrayView)> onBody;       ///< false: no more is wanted
        std::function<void(const QString& error)> onEnd;  ///< last; empty: all has come
    };

    /// `headers` are lines that end in CR LF. Nothing is called back before the event loop runs,
    /// and nothing after `giveUp`.
    HttpFetch(const QUrl& url, const QByteArray& headers, Callbacks callbacks, QObject* parent);

    /// Ends the connection; the object deletes itself.
    void giveUp();

private:
    void connected();
    void read();
    void readHead(QByteArrayView bytes);
    void readBody(QByteArrayView bytes);
    void disconnected(QAbstractSocket::SocketError error);
    void end(const QString& error);

    const QUrl m_url;
    const QByteArray m_headers;
    const Callbacks m_callbacks;
    QSslSocket m_socket;
    QByteArray m_buffer;
    QByteArray m_head;
    std::optional<BodyDecoder> m_body;
    bool m_isOver = false;
};

}  // namespace sayloft
