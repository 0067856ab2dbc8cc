// SPDX-License-Identifier: MIT
// The buttons of the permissions, with the real settings programs of a desktop behind them.
#include "tests/outside/WindowDesk.h"
#include "tests/support/XfceSession.h"

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using State = AccessibleObject::State;

const QString mixer = QStringLiteral("pavucontrol");
const QString xfceSettings = QStringLiteral("xfce4-accessibility-settings");
const QString help = QStringLiteral("Sayloft: keyboard and microphone");
const QString grantMicrophone = QStringLiteral("Grant microphone");
const QString grantKeyboard = QStringLiteral("Grant accessibility");
const QString microphone = QStringLiteral("State of the microphone");
const QString keyboard = QStringLiteral("State of the keyboard's reach");

/// A desktop of Xfce, with its store of settings.
class SettingsPermissions : public testing::Test {
protected:
    SettingsPermissions() {
        m_desk.setVariable(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("XFCE"));
        m_desk.startProgram(xfconfd());
        m_desk.startSayloft();
        m_desk.openSettings();
    }

    WindowDesk m_desk;
};

TEST_F(SettingsPermissions, openTheDesktopsProgramsByAssistiveTechnology) {
    m_desk.press(WindowDesk::settings, QStringLiteral("Open Settings: Accessibility"));
    EXPECT_TRUE(m_desk.appears(xfceSettings));
    m_desk.press(WindowDesk::settings, QStringLiteral("Open Settings: Microphone"));
    EXPECT_TRUE(m_desk.appears(mixer));
}

TEST_F(SettingsPermissions, openTheDesktopsProgramForTheKeyboardWithAClick) {
    m_desk.click(WindowDesk::settings, QStringLiteral("Open Settings: Accessibility"));
    EXPECT_TRUE(m_desk.appears(xfceSettings));
}

TEST_F(SettingsPermissions, openTheMixerWithAClick) {
    m_desk.click(WindowDesk::settings, QStringLiteral("Open Settings: Microphone"));
    EXPECT_TRUE(m_desk.appears(mixer));
}

/// A first run on a desktop that has no program for the keyboard, and no browser.
class OnboardingPermissions : public testing::Test {
protected:
    void startWith(WindowDesk& desk) {
        desk.setVariable(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("i3"));
        for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS"})
            desk.setVariable(QString::fromLatin1(name), desk.home());
        desk.startSayloft({});
        static_cast<void>(desk.windows().window(WindowDesk::onboarding));
    }

    [[nodiscard]] static bool says(const WindowDesk& desk, const QString& about,
                                   const QString& text) {
        return desk.windows().says(WindowDesk::onboarding, about, text);
    }

    const QString m_ready = QStringLiteral("✓ Ready");
    const QString m_notYet = QStringLiteral("✕ Not yet");
};

TEST_F(OnboardingPermissions, openTheMixerWithAClickAndSeeWhatBecomesOfIt) {
    WindowDesk desk;
    desk.plugInSound();
    desk.room().kill();
    startWith(desk);
    EXPECT_TRUE(says(desk, microphone, m_notYet));
    desk.click(WindowDesk::onboarding, grantMicrophone);
    EXPECT_TRUE(desk.appears(mixer));
    desk.room().restart();
    EXPECT_TRUE(says(desk, microphone, m_ready));
    EXPECT_FALSE(desk.control(WindowDesk::onboarding, grantMicrophone).is(State::sensitive));
}

TEST_F(OnboardingPermissions, openTheMixerByAssistiveTechnology) {
    WindowDesk desk;
    startWith(desk);
    desk.press(WindowDesk::onboarding, grantMicrophone);
    EXPECT_TRUE(desk.appears(mixer));
}

// No test can click on a server that lets nobody press keys and buttons for the user.
TEST_F(OnboardingPermissions, openTheHelpWhereTheKeyboardIsOutOfReach) {
    WindowDesk desk({.arguments = {QStringLiteral("-extension"), QStringLiteral("XTEST")}});
    startWith(desk);
    EXPECT_TRUE(says(desk, keyboard, m_notYet));
    desk.press(WindowDesk::onboarding, grantKeyboard);
    EXPECT_TRUE(desk.windows().window(help).text().contains(
        QStringLiteral("presses the paste keys for you")));
}

}  // namespace
}  // namespace sayloft::test
