// SPDX-License-Identifier: MIT
#include "tests/support/NotificationDaemon.h"

#include "tests/support/VisibleWindows.h"
#include "tests/support/WaitUntil.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <csignal>
#include <stdexcept>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

bool isOnTheBus(const QProcessEnvironment& environment, qint64 pid) {
    QProcess ask;
    ask.setProcessEnvironment(environment);
    ask.start(
        QStringLiteral("dbus-send"),
        {QStringLiteral("--session"), QStringLiteral("--print-reply=literal"),
         QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
         QStringLiteral("org.freedesktop.DBus.GetConnectionUnixProcessID"),
         QStringLiteral("string:org.freedesktop.Notifications")});
    return ask.waitForFinished(2000) && ask.exitCode() == 0 &&
           ask.readAllStandardOutput().simplified().endsWith(' ' + QByteArray::number(pid));
}

/// Debian keeps it in a directory of the machine's architecture.
QString xfceProgram() {
    const QByteArray files =
        run(QStringLiteral("dpkg"), {QStringLiteral("-L"), QStringLiteral("xfce4-notifyd")});
    for (const QByteArray& file : files.split('\n')) {
        const QFileInfo info(QString::fromLocal8Bit(file));
        if (info.isFile() && info.fileName() == QStringLiteral("xfce4-notifyd") &&
            info.isExecutable())
            return info.filePath();
    }
    throw std::runtime_error("xfce4-notifyd is not installed");
}

}  // namespace

const char* nameOf(Notifying daemon) {
    return daemon == Notifying::dunst ? "dunst" : "xfce4-notifyd";
}

QString programOf(Notifying daemon) {
    return daemon == Notifying::dunst ? QStringLiteral("dunst") : xfceProgram();
}

NotificationDaemon::NotificationDaemon(Notifying daemon, const XServer& server,
                                       const SessionBus& bus)
    : m_daemon(daemon), m_server(server), m_environment(server.environment()) {
    bus.addTo(m_environment);
    m_environment.insert(QStringLiteral("HOME"), m_home.path());
    m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.path());
    m_environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
    m_environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    m_program = std::make_unique<ChildProgram>(programOf(daemon), QStringList(), m_environment);
    if (!waitUntil([this] { return isOnTheBus(m_environment, m_program->pid()); }, 20s))
        throw std::runtime_error(std::string(nameOf(daemon)) +
                                 " did not come up: " + m_program->standardError().toStdString());
}

QStringList NotificationDaemon::windows() const {
    return visibleWindows(m_server, QString::fromLatin1(nameOf(m_daemon)));
}

void NotificationDaemon::click() const {
    const QString window = windows().value(0);
    const QByteArray size = run(QStringLiteral("xdotool"),
                                {QStringLiteral("getwindowgeometry"), window}, {}, m_environment);
    const QRegularExpressionMatch match =
        QRegularExpression(QStringLiteral("Geometry: (\\d+)x(\\d+)"))
            .match(QString::fromLatin1(size));
    // dunst dismisses with the left button and acts with the middle one; Xfce has a button for
    // the action at the lower right.
    const bool isDunst = m_daemon == Notifying::dunst;
    run(QStringLiteral("xdotool"),
        {QStringLiteral("mousemove"), QStringLiteral("--window"), window,
         QString::number(match.captured(1).toInt() - 50),
         QString::number(match.captured(2).toInt() - 25), QStringLiteral("click"),
         isDunst ? QStringLiteral("2") : QStringLiteral("1")},
        {}, m_environment);
}

void NotificationDaemon::kill() {
    m_program->signal(SIGKILL);
    if (!m_program->waitForEnd(5s))
        throw std::runtime_error(std::string(nameOf(m_daemon)) + " does not end");
}

}  // namespace sayloft::test
