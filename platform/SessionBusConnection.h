// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QThread>

#include <chrono>
#include <memory>
#include <optional>

namespace sayloft {

/// The program's connection to the session bus. Where the bus goes and another one comes to the
/// same address, there is a new connection to that. Main thread; nothing but the constructor waits
/// for the bus.
class SessionBusConnection : public QObject {
    Q_OBJECT

public:
    /// Without an address, or when nobody answers there, there is never a bus.
    explicit SessionBusConnection(const std::optional<QString>& address);
    ~SessionBusConnection() override;
    SessionBusConnection(const SessionBusConnection&) = delete;
    SessionBusConnection& operator=(const SessionBusConnection&) = delete;

    /// None while there is no bus.
    [[nodiscard]] const std::optional<QDBusConnection>& bus() const { return m_bus; }

Q_SIGNALS:
    /// The bus has gone, and with it all that it knew of us.
    void lost();
    /// There is a bus again, which knows nothing of us yet.
    void restored();

private Q_SLOTS:
    void disconnected();

private:
    void adopt(const QDBusConnection& bus);
    void retry();
    void retried(const QString& name);
    [[nodiscard]] QString nextName();

    const QString m_address;
    int m_connections = 0;
    std::optional<QDBusConnection> m_bus;
    std::chrono::milliseconds m_retryInterval{};
    std::unique_ptr<QThread> m_attempt;
};

}  // namespace sayloft
