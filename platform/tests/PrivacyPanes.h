// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/VisibleWindows.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QTemporaryDir>

#include <chrono>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace sayloft::test {

inline const QString prefix =
    QStringLiteral("x-apple.systempreferences:com.apple.preference.security?");
inline const QString accessibility = QStringLiteral("Privacy_Accessibility");
inline const QString microphone = QStringLiteral("Privacy_Microphone");
inline const QString helpPage = QStringLiteral(SAYLOFT_HELP_PAGE);

/// Opens panes in a program of its own, on a desktop where nothing is installed but what the test
/// installs: programs that write down how they were called.
class PrivacyPanes : public testing::Test {
protected:
    PrivacyPanes() : PrivacyPanes(XServer::Options{}) {}
    explicit PrivacyPanes(const XServer::Options& server)
        : m_server(server), m_environment(m_server.environment()) {
        QDir(m_directory.path()).mkdir(QStringLiteral("bin"));
        QDir(m_directory.path()).mkdir(QStringLiteral("data"));
        for (const char* name : {"HOME", "XDG_RUNTIME_DIR"})
            m_environment.insert(QString::fromLatin1(name), m_directory.path());
        for (const char* name :
             {"XDG_DATA_HOME", "XDG_DATA_DIRS", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            m_environment.insert(QString::fromLatin1(name), path(QStringLiteral("data")));
        m_environment.insert(QStringLiteral("PATH"), path(QStringLiteral("bin")));
        m_environment.insert(QStringLiteral("CALLS"), path(QStringLiteral("calls")));
        for (const char* name :
             {"BROWSER", "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "DBUS_SESSION_BUS_ADDRESS"})
            m_environment.remove(QString::fromLatin1(name));
    }

    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }

    void install(const QString& program, const QByteArray& commands) {
        const QString file = path(QStringLiteral("bin/") + program);
        writeFile(file, "#!/bin/sh\n" + commands);
        ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::ExeOwner));
    }
    /// Writes down its name and arguments, then ends with `exitCode`.
    void installStandIn(const QString& program, int exitCode = 0) {
        install(program, "echo \"" + program.toLatin1() + " $*\" >> \"$CALLS\"\nexit " +
                             QByteArray::number(exitCode) + '\n');
    }
    /// A desktop on which these are the programs for web addresses and for HTML files.
    void installBrowser(const QByteArray& forAddresses, const QByteArray& forFiles) {
        install(QStringLiteral("xdg-mime"), "[ \"$*\" = \"query default text/html\" ] && echo " +
                                                forFiles + " || echo " + forAddresses + '\n');
        installStandIn(QStringLiteral("xdg-open"));
    }
    /// The tools that find and open a browser, but none of the applications of this machine.
    void useTheToolsOfDebian() {
        m_environment.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
        QFile::link(QStringLiteral("/usr/share/mime"), path(QStringLiteral("data/mime")));
    }
    void useTheProgramsOfDebian() {
        m_environment.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
        m_environment.remove(QStringLiteral("XDG_DATA_DIRS"));
        m_environment.remove(QStringLiteral("XDG_CONFIG_DIRS"));
        m_environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
        m_bus.emplace(SessionBus::Options{.environment = m_environment});
        m_bus->addTo(m_environment);
    }
    void setDesktop(const char* desktop) {
        m_environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QString::fromLatin1(desktop));
    }

    void openHelp(const QString& section) {
        m_opener.emplace(QStringLiteral(PRIVACY_OPENER),
                         QStringList{helpPage, QLatin1Char('#') + section}, m_environment);
    }

    void open(const QString& anchor, const QString& page = helpPage) {
        m_opener.emplace(QStringLiteral(PRIVACY_OPENER), QStringList{page, prefix + anchor},
                         m_environment);
    }

    [[nodiscard]] QString calls() const {
        return QString::fromUtf8(readFile(path(QStringLiteral("calls"))));
    }
    [[nodiscard]] std::string callsOnce(const QString& expected) const {
        static_cast<void>(waitUntil([&] { return calls() == expected; }));
        return calls().toStdString();
    }
    [[nodiscard]] bool shows(const QString& windowClass) const {
        return !visibleWindows(m_server, windowClass).isEmpty();
    }
    [[nodiscard]] bool appears(const QString& windowClass) const {
        return waitUntil([&] { return shows(windowClass); }, std::chrono::seconds(20));
    }
    [[nodiscard]] bool showsHelp() const { return shows(QStringLiteral("privacy_opener")); }
    [[nodiscard]] bool helpAppears() const { return appears(QStringLiteral("privacy_opener")); }

    QTemporaryDir m_directory;
    XServer m_server;
    WindowManager m_manager{m_server};
    QProcessEnvironment m_environment;
    std::optional<SessionBus> m_bus;
    std::optional<ChildProgram> m_opener;
};

}  // namespace sayloft::test
