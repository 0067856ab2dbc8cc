// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace sayloft::bench {

/// A tray that shows nothing and notes when an item was registered with it. The bus is the one that
/// DBUS_SESSION_BUS_ADDRESS names. Main thread.
class TrayWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items CONSTANT SCRIPTABLE true)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered CONSTANT SCRIPTABLE true)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion CONSTANT SCRIPTABLE true)

public:
    using Clock = std::chrono::steady_clock;

    /// Throws std::runtime_error when the name is taken.
    explicit TrayWatcher(const QString& busAddress);

    /// Forgets what was registered, and waits for the next item; nothing when there is none in 20
    /// s.
    [[nodiscard]] std::optional<Clock::time_point> waitForItem();

    [[nodiscard]] QStringList items() const { return {}; }
    [[nodiscard]] bool isHostRegistered() const { return true; }
    [[nodiscard]] int protocolVersion() const { return 0; }

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& item);
    Q_SCRIPTABLE void RegisterStatusNotifierHost(const QString& host);

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString& item);
    Q_SCRIPTABLE void StatusNotifierItemUnregistered(const QString& item);
    Q_SCRIPTABLE void StatusNotifierHostRegistered();

private:
    QDBusConnection m_bus;
    std::optional<Clock::time_point> m_registered;
};

}  // namespace sayloft::bench
