// SPDX-License-Identifier: MIT
#include "tests/support/SessionBus.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

QString readAddress(QProcess& daemon) {
    QByteArray line;
    while (!line.endsWith('\n')) {
        if (!daemon.waitForReadyRead(10000))
            throw std::runtime_error("dbus-daemon did not come up");
        line += daemon.readAllStandardOutput();
    }
    return QString::fromLatin1(line.trimmed());
}

}  // namespace

SessionBus::SessionBus()
    : m_program(QStringLiteral("dbus-daemon"),
                {QStringLiteral("--session"), QStringLiteral("--nofork"),
                 QStringLiteral("--print-address")}),
      m_address(readAddress(m_program.process())) {}

void SessionBus::addTo(QProcessEnvironment& environment) const {
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
}

}  // namespace sayloft::test
