// SPDX-License-Identifier: MIT
#include "tests/support/TitleWatch.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <utility>

namespace sayloft::test {
namespace {

const QString connectionName = QStringLiteral("title watch");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");

}  // namespace

TitleWatch::TitleWatch(const SessionBus& bus, QString item)
    : m_item(std::move(item)),
      m_connection(QDBusConnection::connectToBus(bus.address(), connectionName)) {
    m_connection.connect(m_item, itemPath, itemInterface, QStringLiteral("NewTitle"), this,
                         SLOT(readTitle()));
    readTitle();
}

TitleWatch::~TitleWatch() {
    QDBusConnection::disconnectFromBus(connectionName);
}

void TitleWatch::readTitle() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_item, itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << itemInterface << QStringLiteral("Title");
    const QDBusMessage answer = m_connection.call(call);
    if (!answer.arguments().isEmpty())
        m_titles.append(answer.arguments()[0].value<QDBusVariant>().variant().toString());
}

}  // namespace sayloft::test
