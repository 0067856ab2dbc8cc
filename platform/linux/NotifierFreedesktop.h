// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Notifier.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <cstdint>
#include <functional>
#include <map>

namespace sayloft {

class SessionBusConnection;

/// The notification daemon of the desktop, org.freedesktop.Notifications. What it shows goes with
/// this object; what was shown when the daemon crashed, or the bus, is not shown again.
class NotifierFreedesktop : public QObject, public Notifier {
    Q_OBJECT

public:
    /// While there is no bus nothing is shown. The connection outlives this.
    explicit NotifierFreedesktop(SessionBusConnection& connection);
    ~NotifierFreedesktop() override;
    NotifierFreedesktop(const NotifierFreedesktop&) = delete;
    NotifierFreedesktop& operator=(const NotifierFreedesktop&) = delete;

    void show(Notification notification) override;
    void withdraw(const QString& key) override;

private Q_SLOTS:
    void actionInvoked(uint id, const QString& action, const QDBusMessage& signal);
    void notificationClosed(uint id, uint reason, const QDBusMessage& signal);

private:
    struct Entry {
        enum class State { waiting, underWay, shown };

        Notification notification;
        State state = State::waiting;
        int attempts = 0;
        // Once shown: the daemon's number for it, which means something to that daemon alone.
        uint id = 0;
        QString daemon;
    };
    using Number = std::uint64_t;
    using Entries = std::map<Number, Entry>;
    using Answered = std::function<void(const QDBusMessage&)>;

    void enterBus();
    void busLost();
    void call(const QString& method, const QVariantList& arguments, const Answered& answered);
    void deliver(Number number);
    void notify(Number number, const QStringList& capabilities);
    void notified(Number number, const QDBusMessage& answer);
    void close(const QString& daemon, uint id);
    void deliverWaiting();
    [[nodiscard]] Entries::iterator shownBy(const QString& daemon, uint id);

    SessionBusConnection& m_connection;
    QDBusServiceWatcher m_daemons;
    Number m_newest = 0;
    Entries m_entries;
};

}  // namespace sayloft
