// SPDX-License-Identifier: MIT
#include "platform/SessionBusConnection.h"

#include <QRegularExpression>
#include <QTimer>

#include <algorithm>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds shortestRetry = 250ms;
constexpr std::chrono::milliseconds longestRetry = 8s;

// A bus that is started anew has another identity, and would be refused.
QString withoutIdentity(QString address) {
    static const QRegularExpression identity(QStringLiteral(",guid=[^,;]*|guid=[^,;]*,"));
    return address.remove(identity);
}

}  // namespace

SessionBusConnection::SessionBusConnection(const std::optional<QString>& address)
    : m_address(withoutIdentity(address.value_or(QString()))) {
    if (m_address.isEmpty())
        return;
    const QString name = nextName();
    const QDBusConnection bus = QDBusConnection::connectToBus(m_address, name);
    if (bus.isConnected())
        adopt(bus);
    else
        QDBusConnection::disconnectFromBus(name);
}

SessionBusConnection::~SessionBusConnection() {
    if (m_attempt)
        m_attempt->wait();
    if (m_bus)
        QDBusConnection::disconnectFromBus(m_bus->name());
}

QString SessionBusConnection::nextName() {
    return QStringLiteral("session bus %1 %2")
        .arg(reinterpret_cast<quintptr>(this))
        .arg(++m_connections);
}

void SessionBusConnection::adopt(const QDBusConnection& bus) {
    m_bus = bus;
    m_bus->connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                   QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                   this, SLOT(disconnected()));
}

void SessionBusConnection::disconnected() {
    if (!m_bus || m_bus->isConnected())
        return;
    QDBusConnection::disconnectFromBus(m_bus->name());
    m_bus.reset();
    Q_EMIT lost();
    m_retryInterval = shortestRetry;
    QTimer::singleShot(m_retryInterval, this, [this] { retry(); });
}

// On a thread of its own: somebody may listen who never answers.
void SessionBusConnection::retry() {
    const QString name = nextName();
    m_attempt.reset(QThread::create([address = m_address, name] {
        static_cast<void>(QDBusConnection::connectToBus(address, name));
    }));
    connect(m_attempt.get(), &QThread::finished, this, [this, name] { retried(name); });
    m_attempt->start();
}

void SessionBusConnection::retried(const QString& name) {
    const QDBusConnection bus(name);
    if (bus.isConnected()) {
        adopt(bus);
        Q_EMIT restored();
        return;
    }
    QDBusConnection::disconnectFromBus(name);
    m_retryInterval = std::min(2 * m_retryInterval, longestRetry);
    QTimer::singleShot(m_retryInterval, this, [this] { retry(); });
}

}  // namespace sayloft
