// SPDX-License-Identifier: MIT
#include "tests/support/ConnectProxy.h"

#include <QHostAddress>

#include <stdexcept>

namespace sayloft::test {
namespace {

void pass(QTcpSocket& from, QTcpSocket& to) {
    to.write(from.readAll());
}

}  // namespace

ConnectProxy::ConnectProxy(std::uint16_t target) : m_target(target) {
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
        while (QTcpSocket* client = m_server.nextPendingConnection())
            accept(*client);
    });
    if (!m_server.listen(QHostAddress::LocalHost))
        throw std::runtime_error("the proxy cannot listen");
}

QString ConnectProxy::url() const {
    return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort());
}

void ConnectProxy::accept(QTcpSocket& client) {
    QObject::connect(&client, &QTcpSocket::disconnected, &client, &QObject::deleteLater);
    QObject::connect(&client, &QTcpSocket::readyRead, &client, [this, &client] {
        if (client.findChild<QTcpSocket*>() == nullptr)
            readRequest(client);
    });
}

// "CONNECT host:port HTTP/1.1", further headers, and an empty line.
void ConnectProxy::readRequest(QTcpSocket& client) {
    const QByteArray end = "\r\n\r\n";
    const qsizetype at = client.peek(client.bytesAvailable()).indexOf(end);
    if (at < 0)
        return;
    const QByteArrayList line = client.read(at + end.size()).split('\r').first().split(' ');
    if (line.size() != 3 || line.first() != "CONNECT")
        return client.abort();
    m_asked.append(line.at(1));
    lead(client);
}

void ConnectProxy::lead(QTcpSocket& client) const {
    auto* host = new QTcpSocket(&client);
    QObject::connect(host, &QTcpSocket::connected, &client, [&client, host] {
        client.write("HTTP/1.1 200 Connection established\r\n\r\n");
        QObject::connect(&client, &QTcpSocket::readyRead, host,
                         [&client, host] { pass(client, *host); });
    });
    QObject::connect(host, &QTcpSocket::readyRead, &client,
                     [&client, host] { pass(*host, client); });
    QObject::connect(host, &QTcpSocket::disconnected, &client, &QTcpSocket::disconnectFromHost);
    QObject::connect(host, &QTcpSocket::errorOccurred, &client, &QTcpSocket::disconnectFromHost);
    host->connectToHost(QHostAddress::LocalHost, m_target);
}

}  // namespace sayloft::test
