// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

#include <stdexcept>
#include <vector>

namespace sayloft {

/// A daemon that does what a test says, for what real ones do not do at a wish.
class ScriptedNotificationDaemon : public QDBusVirtualObject {
public:
    explicit ScriptedNotificationDaemon(const test::SessionBus& bus)
        : m_name(QStringLiteral("daemon %1").arg(reinterpret_cast<quintptr>(this))),
          m_connection(QDBusConnection::connectToBus(bus.address(), m_name)) {
        m_connection.registerVirtualObject(path(), this);
        if (!m_connection.registerService(name()))
            throw std::runtime_error("the name is taken");
    }
    // WORKAROUND: a call of Qt 6.4 that was not delivered refuses itself over its connection, which
    // must still be there.
    ~ScriptedNotificationDaemon() override {
        QCoreApplication::removePostedEvents(this);
        QDBusConnection::disconnectFromBus(m_name);
    }
    ScriptedNotificationDaemon(const ScriptedNotificationDaemon&) = delete;
    ScriptedNotificationDaemon& operator=(const ScriptedNotificationDaemon&) = delete;

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QStringLiteral("GetCapabilities"))
            return connection.send(message.createReply(capabilities));
        if (message.member() == QStringLiteral("CloseNotification")) {
            closed.push_back(message.arguments().value(0).toUInt());
            return connection.send(message.createReply());
        }
        notified.push_back(message);
        if (refuses)
            return connection.send(message.createErrorReply(QDBusError::LimitsExceeded, {}));
        if (!holdsAnswersBack)
            answer(notified.size() - 1);
        return true;
    }

    /// Answers the call of Notify with this index; its number is the index and one.
    void answer(std::size_t index) {
        m_connection.send(notified[index].createReply(static_cast<uint>(index + 1)));
    }

    void emitSignal(const QString& signal, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path(), name(), signal);
        message.setArguments(arguments);
        m_connection.send(message);
    }

    [[nodiscard]] QVariant argument(std::size_t notification, int index) const {
        return notified[notification].arguments().value(index);
    }

    QStringList capabilities{QStringLiteral("body"), QStringLiteral("actions")};
    bool holdsAnswersBack = false;
    bool refuses = false;
    std::vector<QDBusMessage> notified;
    std::vector<uint> closed;

private:
    static QString name() { return QStringLiteral("org.freedesktop.Notifications"); }
    static QString path() { return QStringLiteral("/org/freedesktop/Notifications"); }

    QString m_name;
    QDBusConnection m_connection;
};

}  // namespace sayloft
