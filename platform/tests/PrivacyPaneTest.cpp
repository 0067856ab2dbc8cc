// SPDX-License-Identifier: MIT
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/VisibleWindows.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

const QString prefix = QStringLiteral("x-apple.systempreferences:com.apple.preference.security?");
const QString accessibility = QStringLiteral("Privacy_Accessibility");
const QString microphone = QStringLiteral("Privacy_Microphone");
const QString helpPage = QStringLiteral(SAYLOFT_HELP_PAGE);

/// Opens panes in a program of its own, on a desktop where nothing is installed but what the test
/// installs: programs that write down how they were called.
class PrivacyPanes : public testing::Test {
protected:
    PrivacyPanes() : PrivacyPanes(test::XServer::Options{}) {}
    explicit PrivacyPanes(const test::XServer::Options& server)
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
        test::writeFile(file, "#!/bin/sh\n" + commands);
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
        m_bus.emplace(test::SessionBus::Options{.environment = m_environment});
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
        return QString::fromUtf8(test::readFile(path(QStringLiteral("calls"))));
    }
    [[nodiscard]] std::string callsOnce(const QString& expected) const {
        static_cast<void>(test::waitUntil([&] { return calls() == expected; }));
        return calls().toStdString();
    }
    [[nodiscard]] bool shows(const QString& windowClass) const {
        return !test::visibleWindows(m_server, windowClass).isEmpty();
    }
    [[nodiscard]] bool appears(const QString& windowClass) const {
        return test::waitUntil([&] { return shows(windowClass); }, 20s);
    }
    [[nodiscard]] bool showsHelp() const { return shows(QStringLiteral("privacy_opener")); }
    [[nodiscard]] bool helpAppears() const { return appears(QStringLiteral("privacy_opener")); }

    QTemporaryDir m_directory;
    test::XServer m_server;
    test::WindowManager m_manager{m_server};
    QProcessEnvironment m_environment;
    std::optional<test::SessionBus> m_bus;
    std::optional<test::ChildProgram> m_opener;
};

struct Row {
    const char* name;
    const char* desktop;
    QString anchor;
    const char* call;
};

class PaneOfTheDesktop : public PrivacyPanes, public testing::WithParamInterface<Row> {};

INSTANTIATE_TEST_SUITE_P(
    , PaneOfTheDesktop,
    testing::Values(
        Row{"gnomeMicrophone", "GNOME", microphone, "gnome-control-center sound"},
        Row{"gnomeKeys", "GNOME", accessibility, "gnome-control-center universal-access"},
        Row{"ubuntuKeys", "ubuntu:GNOME", accessibility, "gnome-control-center universal-access"},
        Row{"kdeMicrophone", "KDE", microphone, "systemsettings kcm_pulseaudio"},
        Row{"kdeKeys", "KDE", accessibility, "systemsettings kcm_access"},
        Row{"xfceMicrophone", "XFCE", microphone, "pavucontrol --tab=4"},
        Row{"xfceKeys", "XFCE", accessibility, "xfce4-accessibility-settings "},
        Row{"anotherMicrophone", "i3", microphone, "pavucontrol --tab=4"}),
    [](const auto& row) { return row.param.name; });

TEST_P(PaneOfTheDesktop, isOpenedAmongAllThatAreInstalled) {
    for (const char* program :
         {"gnome-control-center", "systemsettings", "pavucontrol", "xfce4-accessibility-settings"})
        installStandIn(QString::fromLatin1(program));
    setDesktop(GetParam().desktop);
    open(GetParam().anchor);
    const QString expected = QString::fromLatin1(GetParam().call) + QLatin1Char('\n');
    EXPECT_EQ(callsOnce(expected), expected.toStdString());
    test::turnEventLoopFor(300ms);
    EXPECT_EQ(calls(), expected);
    EXPECT_FALSE(showsHelp());
}

TEST_F(PrivacyPanes, areThoseOfOlderPlasmaWhereThatIsInstalled) {
    installStandIn(QStringLiteral("systemsettings5"));
    setDesktop("KDE");
    open(accessibility);
    EXPECT_EQ(callsOnce(QStringLiteral("systemsettings5 kcm_access\n")),
              "systemsettings5 kcm_access\n");
}

TEST_F(PrivacyPanes, fallBackOnTheMixerWhenTheDesktopsOwnFails) {
    installStandIn(QStringLiteral("gnome-control-center"), 1);
    installStandIn(QStringLiteral("pavucontrol"));
    setDesktop("GNOME");
    open(microphone);
    const QString expected = QStringLiteral("gnome-control-center sound\npavucontrol --tab=4\n");
    EXPECT_EQ(callsOnce(expected), expected.toStdString());
}

TEST_F(PrivacyPanes, thatFailWhenTheUserIsThroughWithThemAreFollowedByNothing) {
    install(QStringLiteral("gnome-control-center"),
            "/bin/sleep 5.5\necho failed >> $CALLS\nexit 1\n");
    installStandIn(QStringLiteral("pavucontrol"));
    setDesktop("GNOME");
    open(microphone);
    EXPECT_EQ(callsOnce(QStringLiteral("failed\n")), "failed\n");
    test::turnEventLoopFor(300ms);
    EXPECT_EQ(calls(), QStringLiteral("failed\n"));
    EXPECT_FALSE(showsHelp());
}

TEST_F(PrivacyPanes, fallBackOnTheHelpInTheBrowser) {
    installBrowser("browser.desktop", "browser.desktop");
    setDesktop("GNOME");
    open(microphone);
    const QString expected =
        QStringLiteral("xdg-open file://") + helpPage + QStringLiteral("#microphone\n");
    EXPECT_EQ(callsOnce(expected), expected.toStdString());
    EXPECT_FALSE(showsHelp());
}

TEST_F(PrivacyPanes, showTheHelpThemselvesWhereAnEditorWouldOpenIt) {
    installBrowser("browser.desktop", "editor.desktop");
    open(accessibility);
    EXPECT_TRUE(helpAppears());
    EXPECT_EQ(calls(), QString());
}

TEST_F(PrivacyPanes, showTheHelpThemselvesWhereNothingIsInstalled) {
    open(accessibility);
    EXPECT_TRUE(helpAppears());
}

/// On a desktop that has a setting for everything.
class PanesOfGnome : public PrivacyPanes {
protected:
    explicit PanesOfGnome(const test::XServer::Options& server = {}) : PrivacyPanes(server) {
        installStandIn(QStringLiteral("gnome-control-center"));
        installBrowser("browser.desktop", "browser.desktop");
        setDesktop("GNOME");
    }

    void expectTheHelpForTheKeyboardAlone() {
        open(accessibility);
        const QString help =
            QStringLiteral("xdg-open file://") + helpPage + QStringLiteral("#accessibility\n");
        EXPECT_EQ(callsOnce(help), help.toStdString());
        open(microphone);
        const QString both = help + QStringLiteral("gnome-control-center sound\n");
        EXPECT_EQ(callsOnce(both), both.toStdString());
    }
};

class PanesWithoutTyping : public PanesOfGnome {
protected:
    PanesWithoutTyping()
        : PanesOfGnome({.arguments = {QStringLiteral("-extension"), QStringLiteral("XTEST")}}) {}
};

TEST_F(PanesWithoutTyping, areTheHelpWhereNoSettingGivesTheKeyboardBack) {
    expectTheHelpForTheKeyboardAlone();
}

TEST_F(PanesOfGnome, areTheHelpWhereACompositorKeepsTheKeyboard) {
    m_environment.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-0"));
    expectTheHelpForTheKeyboardAlone();
}

TEST_F(PanesOfGnome, areTheHelpInASessionOfWayland) {
    m_environment.insert(QStringLiteral("XDG_SESSION_TYPE"), QStringLiteral("wayland"));
    expectTheHelpForTheKeyboardAlone();
}

class TheHelp : public PrivacyPanes {};

TEST_F(TheHelp, opensAtItsSectionWhateverSettingsThereAre) {
    for (const char* program : {"gnome-control-center", "pavucontrol"})
        installStandIn(QString::fromLatin1(program));
    installBrowser("browser.desktop", "browser.desktop");
    setDesktop("GNOME");
    openHelp(QStringLiteral("sound-server"));
    const QString expected =
        QStringLiteral("xdg-open file://") + helpPage + QStringLiteral("#sound-server\n");
    EXPECT_EQ(callsOnce(expected), expected.toStdString());
    EXPECT_FALSE(showsHelp());
}

TEST_F(TheHelp, opensInItsOwnWindowWhereNothingIsInstalled) {
    openHelp(QStringLiteral("sound-server"));
    EXPECT_TRUE(helpAppears());
}

TEST_F(TheHelp, hasTheSectionsThatAreAskedFor) {
    const QByteArray page = test::readFile(helpPage);
    for (const char* section : {"accessibility", "microphone", "sound-server"})
        EXPECT_TRUE(
            page.contains(QByteArray("<a name=\"") + section + "\" id=\"" + section + "\">"))
            << section;
}

TEST_F(PrivacyPanes, showTheHelpInOneWindow) {
    m_opener.emplace(QStringLiteral(PRIVACY_OPENER),
                     QStringList{helpPage, prefix + accessibility, prefix + microphone},
                     m_environment);
    ASSERT_TRUE(helpAppears());
    test::turnEventLoopFor(300ms);
    EXPECT_EQ(test::visibleWindows(m_server, QStringLiteral("privacy_opener")).size(), 1);
}

TEST_F(PrivacyPanes, thatNobodyKnowsOpenNothing) {
    installStandIn(QStringLiteral("pavucontrol"));
    installBrowser("browser.desktop", "browser.desktop");
    open(QStringLiteral("Privacy_Camera"));
    test::turnEventLoopFor(500ms);
    EXPECT_EQ(calls(), QString());
    EXPECT_FALSE(showsHelp());
}

TEST_F(PrivacyPanes, withTheToolsOfDebianAreTheHelpInItsDefaultBrowser) {
    useTheToolsOfDebian();
    installStandIn(QStringLiteral("browser"));
    test::writeFile(path(QStringLiteral("data/applications/browser.desktop")),
                    "[Desktop Entry]\nType=Application\nName=Browser\nExec=" +
                        path(QStringLiteral("bin/browser")).toLocal8Bit() +
                        " %u\nMimeType=text/html;x-scheme-handler/https;\n");
    test::writeFile(path(QStringLiteral("data/mimeapps.list")),
                    "[Default Applications]\ntext/html=browser.desktop\n"
                    "x-scheme-handler/https=browser.desktop\n");
    open(accessibility);
    EXPECT_TRUE(test::waitUntil([this] { return calls().contains(helpPage); }))
        << calls().toStdString();
    EXPECT_FALSE(showsHelp());
}

TEST_F(PrivacyPanes, withTheToolsOfDebianButNoBrowserAreTheHelpInAWindow) {
    useTheToolsOfDebian();
    open(accessibility);
    EXPECT_TRUE(helpAppears());
}

TEST_F(PrivacyPanes, ofXfceOpenItsSettingsWhichStayWhenTheProgramEnds) {
    useTheProgramsOfDebian();
    setDesktop("XFCE");
    open(accessibility);
    ASSERT_TRUE(appears(QStringLiteral("xfce4-accessibility-settings")));
    m_opener->process().closeWriteChannel();
    ASSERT_TRUE(m_opener->waitForEnd(5s));
    test::turnEventLoopFor(300ms);
    EXPECT_TRUE(shows(QStringLiteral("xfce4-accessibility-settings")));
}

TEST_F(PrivacyPanes, ofADesktopWithoutItsOwnOpenTheMixer) {
    useTheProgramsOfDebian();
    open(microphone);
    EXPECT_TRUE(appears(QStringLiteral("pavucontrol")));
}

}  // namespace
}  // namespace sayloft
