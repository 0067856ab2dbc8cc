// SPDX-License-Identifier: MIT
// The help of the program, and when it stands in for settings of the desktop.
#include "platform/tests/PrivacyPanes.h"

namespace sayloft {
namespace {

using test::accessibility;
using test::helpPage;
using test::microphone;
using test::PrivacyPanes;

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

}  // namespace
}  // namespace sayloft
