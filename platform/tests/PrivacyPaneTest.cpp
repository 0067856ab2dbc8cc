// SPDX-License-Identifier: MIT
#include "platform/tests/PrivacyPanes.h"

#include <string>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::accessibility;
using test::helpPage;
using test::microphone;
using test::prefix;
using test::PrivacyPanes;

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
