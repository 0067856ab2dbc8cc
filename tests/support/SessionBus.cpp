// SPDX-License-Identifier: MIT
#include "tests/support/SessionBus.h"

#include "tests/support/TempHome.h"

#include <QFile>

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <utility>

namespace sayloft::test {
namespace {

/// Services come from the one directory only.
QByteArray configuration(const QString& services) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:tmpdir=/tmp</listen>
  <servicedir>)" +
           services.toUtf8() + R"(</servicedir>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

QStringList arguments(const SessionBus::Options& options, const QString& configurationFile) {
    QStringList arguments{QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                          QStringLiteral("--address=unix:path=") + options.socket};
    if (options.services.isEmpty())
        return arguments << QStringLiteral("--session");
    writeFile(configurationFile, configuration(options.services));
    return arguments << QStringLiteral("--config-file=") + configurationFile;
}

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

SessionBus::SessionBus(Options options) : m_options(std::move(options)) {
    if (m_options.socket.isEmpty())
        m_options.socket = m_directory.filePath(QStringLiteral("bus"));
    restart();
}

void SessionBus::kill() {
    m_program->signal(SIGKILL);
    if (!m_program->waitForEnd(std::chrono::seconds(5)))
        throw std::runtime_error("dbus-daemon does not end");
}

void SessionBus::restart() {
    m_program.reset();
    QFile::remove(m_options.socket);
    m_program = std::make_unique<ChildProgram>(
        QStringLiteral("dbus-daemon"),
        arguments(m_options, m_directory.filePath(QStringLiteral("bus.conf"))),
        m_options.environment);
    m_address = readAddress(m_program->process());
}

void SessionBus::addTo(QProcessEnvironment& environment) const {
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_address);
}

}  // namespace sayloft::test
