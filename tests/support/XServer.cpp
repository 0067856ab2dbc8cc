// SPDX-License-Identifier: MIT
#include "tests/support/XServer.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

// With -displayfd the server itself picks a free display and says which once it accepts clients;
// -noreset keeps the state of the keyboard when the last client leaves.
QStringList serverArguments(const QStringList& screenArguments) {
    return QStringList{QStringLiteral("-displayfd"), QStringLiteral("1"),
                       QStringLiteral("-noreset"), QStringLiteral("-nolisten"),
                       QStringLiteral("tcp")} +
           screenArguments;
}

QStringList screenArguments(const XServer::Options& options) {
    return QStringList{QStringLiteral("-screen"), QStringLiteral("0"), options.screen} +
           options.arguments;
}

QString readDisplay(QProcess& server) {
    QByteArray line;
    while (!line.endsWith('\n')) {
        if (!server.waitForReadyRead(15000))
            throw std::runtime_error("the X server did not come up: " +
                                     server.readAllStandardError().toStdString());
        line += server.readAllStandardOutput();
    }
    return QLatin1Char(':') + QString::fromLatin1(line.trimmed());
}

}  // namespace

XServer::XServer(const Options& options)
    : XServer(QStringLiteral("Xvfb"), screenArguments(options)) {}

XServer::XServer(const QString& program, const QStringList& screenArguments)
    : m_program(program, serverArguments(screenArguments)),
      m_display(readDisplay(m_program.process())),
      m_displayBefore(qgetenv("DISPLAY")) {
    qputenv("DISPLAY", m_display.toLatin1());
}

XServer::~XServer() {
    if (m_displayBefore.isEmpty())
        qunsetenv("DISPLAY");
    else
        qputenv("DISPLAY", m_displayBefore);
}

QProcessEnvironment XServer::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DISPLAY"), m_display);
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("XDG_SESSION_TYPE"));
    environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("GDK_BACKEND"), QStringLiteral("x11"));
    return environment;
}

}  // namespace sayloft::test
