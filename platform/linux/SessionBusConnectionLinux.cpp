// SPDX-License-Identifier: MIT
#include "platform/SessionBusConnection.h"

#include <QFile>
#include <QString>

#include <sys/stat.h>
#include <unistd.h>

namespace sayloft {
namespace {

/// As the bus library looks for it; what is no socket of ours would make it start a bus.
bool isSocketOfOurs(const QString& path) {
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISSOCK(status.st_mode) &&
           status.st_uid == ::geteuid();
}

bool isThere() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return !address.startsWith(QStringLiteral("autolaunch:"));
    const QString runtimeDir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtimeDir.isEmpty() && isSocketOfOurs(runtimeDir + QStringLiteral("/bus"));
}

}  // namespace

std::optional<QDBusConnection> sessionBus() {
    if (!isThere())
        return std::nullopt;
    QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

}  // namespace sayloft
