// SPDX-License-Identifier: MIT
#include "tests/support/AccessibilityBus.h"

#include "tests/support/WaitUntil.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <stdexcept>

namespace sayloft::test {
namespace {

const QString service = QStringLiteral("org.a11y.Bus");
const QString path = QStringLiteral("/org/a11y/bus");
const QString sessionName = QStringLiteral("accessibility-session");
const QString busName = QStringLiteral("accessibility");

QProcessEnvironment environment(const SessionBus& session, const QString& directory) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    session.addTo(environment);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), directory);
    environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    return environment;
}

QDBusConnection connected(const QString& address, const QString& name) {
    QDBusConnection connection = QDBusConnection::connectToBus(address, name);
    if (!connection.isConnected())
        throw std::runtime_error("no connection to " + address.toStdString());
    return connection;
}

}  // namespace

AccessibilityBus::AccessibilityBus(const SessionBus& session)
    : m_session(connected(session.address(), sessionName)),
      m_launcher(std::make_unique<ChildProgram>(QStringLiteral("/usr/libexec/at-spi-bus-launcher"),
                                                QStringList{QStringLiteral("--launch-immediately")},
                                                environment(session, m_directory.path()))) {
    const auto isThere = [this] {
        return m_session.interface()->isServiceRegistered(service).value();
    };
    if (!waitUntil(isThere))
        throw std::runtime_error("the launcher of the accessibility bus did not come up");
    m_connection = connected(address(), busName);
    switchOn();
}

AccessibilityBus::~AccessibilityBus() {
    QDBusConnection::disconnectFromBus(busName);
    QDBusConnection::disconnectFromBus(sessionName);
}

QString AccessibilityBus::address() const {
    const QDBusReply<QString> reply = m_session.call(
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("GetAddress")));
    if (!reply.isValid())
        throw std::runtime_error(reply.error().message().toStdString());
    return reply.value();
}

void AccessibilityBus::switchOn() const {
    QDBusMessage set = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
    set << QStringLiteral("org.a11y.Status") << QStringLiteral("IsEnabled")
        << QVariant::fromValue(QDBusVariant(true));
    const QDBusReply<void> reply = m_session.call(set);
    if (!reply.isValid())
        throw std::runtime_error(reply.error().message().toStdString());
}

}  // namespace sayloft::test
