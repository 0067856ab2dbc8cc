// SPDX-License-Identifier: MIT
#include "app/SingleInstance.h"

#include "models/Paths.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFileInfo>

#include <chrono>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

QString busName() {
    return QStringLiteral("org.sayloft.Sayloft");
}

QString objectPath() {
    return QStringLiteral("/org/sayloft/Sayloft");
}

/// Asking for a bus that is not there would start one, which outlives the program.
bool hasSessionBus() {
    if (qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    const QString runtimeDir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeDir.isEmpty() && QFileInfo::exists(runtimeDir + QStringLiteral("/bus"));
}

void activateTheOther() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        busName(), objectPath(), QStringLiteral("org.freedesktop.Application"),
        QStringLiteral("Activate"));
    call << QVariantMap();
    constexpr auto patience = 3s;
    QDBusConnection::sessionBus().call(call, QDBus::Block,
                                       std::chrono::milliseconds(patience).count());
}

}  // namespace

SingleInstance::SingleInstance() = default;
SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim() {
    if (hasSessionBus() && QDBusConnection::sessionBus().isConnected())
        return claimName();
    return claimLockFile();
}

bool SingleInstance::claimName() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object comes first: whoever sees the name may call it at once.
    bus.registerObject(objectPath(), this, QDBusConnection::ExportScriptableSlots);
    const auto reply =
        bus.interface()->registerService(busName(), QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered)
        return true;
    activateTheOther();
    return false;
}

bool SingleInstance::claimLockFile() {
    ensureDataDir();
    m_lock = std::make_unique<QLockFile>(DATA_DIR + QStringLiteral("/sayloft.lock"));
    // Only a lock whose process is gone is stale, however old it is.
    m_lock->setStaleLockTime(0);
    if (m_lock->tryLock(0))
        return true;
    return m_lock->error() != QLockFile::LockFailedError;
}

void SingleInstance::Activate(const QVariantMap& /*platformData*/) {
    if (onActivate)
        onActivate();
}

void SingleInstance::Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
    Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& /*action*/, const QVariantList& /*parameters*/,
                                    const QVariantMap& platformData) {
    Activate(platformData);
}

}  // namespace sayloft
