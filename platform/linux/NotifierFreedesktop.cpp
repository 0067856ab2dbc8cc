// SPDX-License-Identifier: MIT
#include "platform/linux/NotifierFreedesktop.h"

#include "platform/SessionBusConnection.h"

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace sayloft {
namespace {

/// A daemon that a message of ours crashes is not fed with it for ever.
constexpr int maxAttempts = 3;

QString busName() {
    return QStringLiteral("org.freedesktop.Notifications");
}

QString objectPath() {
    return QStringLiteral("/org/freedesktop/Notifications");
}

QString defaultAction() {
    return QStringLiteral("default");
}

QDBusMessage methodCall(const QString& service, const QString& method,
                        const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, objectPath(), busName(), method);
    message.setArguments(arguments);
    return message;
}

/// The arguments of Notify, for a daemon that can do `capabilities`.
QVariantList notifyArguments(const Notification& notification, const QStringList& capabilities) {
    const bool isMarkup = capabilities.contains(QStringLiteral("body-markup"));
    const QString body = isMarkup ? notification.body.toHtmlEscaped() : notification.body;
    // Some daemons without actions show a dialog in their place.
    const bool isClickable =
        notification.onActivated && capabilities.contains(QStringLiteral("actions"));
    const QStringList actions =
        isClickable ? QStringList{defaultAction(), notification.actionLabel} : QStringList();
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), QStringLiteral("org.sayloft.Sayloft")}};
    constexpr uint replacesNone = 0;
    constexpr int asLongAsTheDaemonLikes = -1;
    return {QStringLiteral("Sayloft"),
            replacesNone,
            QStringLiteral("audio-input-microphone"),
            notification.summary,
            body,
            actions,
            hints,
            asLongAsTheDaemonLikes};
}

}  // namespace

NotifierFreedesktop::NotifierFreedesktop(SessionBusConnection& connection)
    : m_connection(connection) {
    m_daemons.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    m_daemons.addWatchedService(busName());
    connect(&m_daemons, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) {
                if (!owner.isEmpty())
                    deliverWaiting();
            });
    connect(&m_connection, &SessionBusConnection::lost, this, [this] { busLost(); });
    connect(&m_connection, &SessionBusConnection::restored, this, [this] {
        enterBus();
        deliverWaiting();
    });
    if (m_connection.bus())
        enterBus();
}

NotifierFreedesktop::~NotifierFreedesktop() {
    for (const auto& [number, entry] : m_entries) {
        if (entry.state == Entry::State::shown)
            close(entry.daemon, entry.id);
    }
}

void NotifierFreedesktop::enterBus() {
    QDBusConnection bus = *m_connection.bus();
    m_daemons.setConnection(bus);
    // From any sender: naming one makes Qt ask the bus who that is, and wait for the answer.
    bus.connect(QString(), objectPath(), busName(), QStringLiteral("ActionInvoked"), this,
                SLOT(actionInvoked(uint, QString, QDBusMessage)));
    bus.connect(QString(), objectPath(), busName(), QStringLiteral("NotificationClosed"), this,
                SLOT(notificationClosed(uint, uint, QDBusMessage)));
}

// The numbers mean nothing to a daemon on the next bus.
void NotifierFreedesktop::busLost() {
    std::erase_if(m_entries,
                  [](const auto& each) { return each.second.state == Entry::State::shown; });
}

void NotifierFreedesktop::show(Notification notification) {
    withdraw(notification.key);
    const Number number = ++m_newest;
    m_entries[number].notification = std::move(notification);
    deliver(number);
}

void NotifierFreedesktop::withdraw(const QString& key) {
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [&key](const auto& each) {
        return each.second.notification.key == key;
    });
    if (entry == m_entries.end())
        return;
    // One that is under way is closed when the daemon has said its number.
    if (entry->second.state == Entry::State::shown)
        close(entry->second.daemon, entry->second.id);
    m_entries.erase(entry);
}

// Without a time-out: a daemon that hangs shows the message when it goes on, and its number must be
// known then. The bus itself answers for a daemon that ends.
void NotifierFreedesktop::call(const QString& method, const QVariantList& arguments,
                               const Answered& answered) {
    constexpr int noTimeout = std::numeric_limits<int>::max();
    const QDBusPendingCall pending =
        m_connection.bus()->asyncCall(methodCall(busName(), method, arguments), noTimeout);
    auto* watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

// Daemons come and go, so what the one can do that will show the message is asked each time.
void NotifierFreedesktop::deliver(Number number) {
    if (!m_connection.bus())
        return;
    Entry& entry = m_entries[number];
    entry.state = Entry::State::underWay;
    ++entry.attempts;
    call(QStringLiteral("GetCapabilities"), {}, [this, number](const QDBusMessage& answer) {
        const auto found = m_entries.find(number);
        if (found == m_entries.end())
            return;
        if (answer.type() == QDBusMessage::ReplyMessage && m_connection.bus())
            notify(number, answer.arguments().value(0).toStringList());
        else
            found->second.state = Entry::State::waiting;
    });
}

void NotifierFreedesktop::notify(Number number, const QStringList& capabilities) {
    call(QStringLiteral("Notify"), notifyArguments(m_entries[number].notification, capabilities),
         [this, number](const QDBusMessage& answer) { notified(number, answer); });
}

void NotifierFreedesktop::notified(Number number, const QDBusMessage& answer) {
    const bool isShown = answer.type() == QDBusMessage::ReplyMessage;
    const uint id = answer.arguments().value(0).toUInt();
    const auto found = m_entries.find(number);
    if (found == m_entries.end()) {
        if (isShown)
            close(answer.service(), id);
        return;
    }
    Entry& entry = found->second;
    entry.state = isShown ? Entry::State::shown : Entry::State::waiting;
    entry.id = id;
    entry.daemon = answer.service();
}

void NotifierFreedesktop::close(const QString& daemon, uint id) {
    QDBusMessage message = methodCall(daemon, QStringLiteral("CloseNotification"), {id});
    message.setAutoStartService(false);
    if (m_connection.bus())
        m_connection.bus()->send(message);
}

void NotifierFreedesktop::deliverWaiting() {
    std::vector<Number> waiting;
    for (const auto& [number, entry] : m_entries) {
        if (entry.state == Entry::State::waiting && entry.attempts < maxAttempts)
            waiting.push_back(number);
    }
    for (const Number number : waiting)
        deliver(number);
}

NotifierFreedesktop::Entries::iterator NotifierFreedesktop::shownBy(const QString& daemon,
                                                                    uint id) {
    return std::find_if(m_entries.begin(), m_entries.end(), [&](const auto& each) {
        const Entry& entry = each.second;
        return entry.state == Entry::State::shown && entry.id == id && entry.daemon == daemon;
    });
}

void NotifierFreedesktop::actionInvoked(uint id, const QString& action,
                                        const QDBusMessage& signal) {
    const auto entry = shownBy(signal.service(), id);
    if (entry == m_entries.end() || action != defaultAction())
        return;
    // A copy: what is called may show or withdraw.
    const auto onActivated = entry->second.notification.onActivated;
    if (onActivated)
        onActivated();
}

void NotifierFreedesktop::notificationClosed(uint id, uint /*reason*/, const QDBusMessage& signal) {
    const auto entry = shownBy(signal.service(), id);
    if (entry != m_entries.end())
        m_entries.erase(entry);
}

}  // namespace sayloft
