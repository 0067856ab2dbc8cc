// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>

#include <cstdint>

namespace sayloft::test {

/// An HTTP proxy that leads to one port of this machine, whatever host it is asked for. It works
/// while the test turns its event loop.
class ConnectProxy {
public:
    /// Throws std::runtime_error when it cannot listen.
    explicit ConnectProxy(std::uint16_t target);

    /// As variables of the environment name it.
    [[nodiscard]] QString url() const;

    /// What it was asked to connect to, as "host:port".
    [[nodiscard]] const QByteArrayList& asked() const { return m_asked; }

private:
    void accept(QTcpSocket& client);
    void readRequest(QTcpSocket& client);
    void lead(QTcpSocket& client) const;

    const std::uint16_t m_target;
    QByteArrayList m_asked;
    QTcpServer m_server;
};

}  // namespace sayloft::test
