// SPDX-License-Identifier: MIT
#include "platform/SessionBusAddress.h"

#include <QFile>
#include <QUrl>

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

}  // namespace

std::optional<QString> sessionBusAddress() {
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (address.startsWith(QStringLiteral("autolaunch:")))
        return std::nullopt;
    if (!address.isEmpty())
        return address;
    const QString runtimeDir = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = runtimeDir + QStringLiteral("/bus");
    if (runtimeDir.isEmpty() || !isSocketOfOurs(socket))
        return std::nullopt;
    return QStringLiteral("unix:path=") +
           QString::fromLatin1(QUrl::toPercentEncoding(socket, "/", "~"));
}

}  // namespace sayloft
