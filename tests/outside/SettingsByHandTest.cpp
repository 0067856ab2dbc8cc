// SPDX-License-Identifier: MIT
// The settings window with real keys and clicks.
#include "tests/outside/SettingsOnDesk.h"
#include "tests/support/WaitUntil.h"

#include <cmath>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using State = AccessibleObject::State;
using Key = TestKeyboard::Key;

const QString window = WindowDesk::settings;
const QString appearField = QStringLiteral("Appear speed in milliseconds");
const QString inputDevice = QStringLiteral("Input device");

class SettingsByHand : public SettingsOnDesk {
protected:
    void click(const QString& title) { m_desk.click(window, title); }
    void tabTo(const QString& title) { m_desk.tabTo(window, title); }

    TestKeyboard& m_keyboard = m_desk.keyboard();
};

TEST_F(SettingsByHand, addsAChordThatIsHeldAndRemovesTheOneThatIsClicked) {
    open();
    click(QStringLiteral("Add combo to Dictate"));
    static_cast<void>(control(QStringLiteral("Press a combo for Dictate")));
    m_keyboard.tapWith(Key::controlLeft, Key::altLeft);
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {12, 3}));
    static_cast<void>(control(QStringLiteral("Remove Ctrl+Alt from Dictate")));
    click(QStringLiteral("Remove Shift+Super from Dictate"));
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {3}));
}

TEST_F(SettingsByHand, takesATypedTimeWhenItsFieldIsLeft) {
    open();
    m_desk.clickInto(window, appearField);
    m_keyboard.tapWith(Key::controlLeft, Key::a);
    m_keyboard.type(QStringLiteral("250"));
    m_keyboard.tap(Key::tab);
    EXPECT_TRUE(
        waitUntil([this] { return control(appearField).text() == QStringLiteral("250 ms"); }));
    EXPECT_NEAR(m_desk.config().value("animAppear", 0.0), 1 - std::pow(0.05, 1.0 / 15), 1e-9);
}

TEST_F(SettingsByHand, takesATypedTimeWhenSomebodyClicksBesideAllControls) {
    open();
    m_desk.clickInto(window, QStringLiteral("Show after release in milliseconds"));
    m_keyboard.tapWith(Key::controlLeft, Key::a);
    m_keyboard.type(QStringLiteral("2500"));
    m_desk.pointer().click(m_desk.windows().window(window).place().topLeft() + QPoint(5, 5));
    EXPECT_TRUE(m_desk.isSaved("holdDuration", 2.5));
}

TEST_F(SettingsByHand, takesATypedTimeWhenTheWindowIsClosedByItsKey) {
    open();
    m_desk.clickInto(window, appearField);
    m_keyboard.tapWith(Key::controlLeft, Key::a);
    m_keyboard.type(QStringLiteral("60"));
    m_keyboard.tapWith(Key::controlLeft, Key::w);
    m_desk.windows().waitUntilGone(window);
    EXPECT_TRUE(m_desk.isSaved("animAppear", 0.55));
}

TEST_F(SettingsByHand, switchesWhatIsClicked) {
    open();
    click(QStringLiteral("Boost quiet microphone"));
    EXPECT_TRUE(m_desk.isSaved("boostMic", false));
    click(QStringLiteral("Leave transcript in clipboard"));
    EXPECT_TRUE(m_desk.isSaved("leaveInClipboard", true));
    click(QStringLiteral("Boost quiet microphone"));
    EXPECT_TRUE(m_desk.isSaved("boostMic", true));
}

TEST_F(SettingsByHand, choosesAMicrophoneWithClicks) {
    plugInHeadset();
    open();
    click(inputDevice);
    const auto headset = [this] {
        return control(inputDevice).find([](const AccessibleObject& item) {
            return item.name() == QStringLiteral("Headset");
        });
    };
    ASSERT_TRUE(waitUntil([&] { return headset().has_value(); }));
    m_desk.pointer().click(headset()->place().center());
    EXPECT_TRUE(m_desk.isSaved("inputDeviceUID", "headset"));
}

TEST_F(SettingsByHand, choosesAMicrophoneWithTheKeyboardAlone) {
    plugInHeadset();
    open();
    tabTo(inputDevice);
    m_keyboard.type(QStringLiteral("h"));
    EXPECT_TRUE(m_desk.isSaved("inputDeviceUID", "headset"));
    m_keyboard.tap(Key::home);
    EXPECT_TRUE(m_desk.isSaved("inputDeviceUID", nullptr));
}

TEST_F(SettingsByHand, isOperatedWithTheKeyboardAlone) {
    open();
    tabTo(QStringLiteral("Remove Shift+Super from Dictate"));
    m_keyboard.tap(Key::space);
    EXPECT_TRUE(m_desk.isSaved("dictateChords", nlohmann::json::array()));
    // The keyboard has gone on to the button that adds another.
    ASSERT_TRUE(waitUntil(
        [this] { return control(QStringLiteral("Add combo to Dictate")).is(State::focused); }));
    m_keyboard.tap(Key::space);
    static_cast<void>(control(QStringLiteral("Press a combo for Dictate")));
    m_keyboard.tapWith(Key::controlLeft, Key::superLeft);
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {9}));
    tabTo(QStringLiteral("Play start / stop sound"));
    m_keyboard.tap(Key::space);
    EXPECT_TRUE(m_desk.isSaved("playSounds", true));
    tabTo(QStringLiteral("Overlay"));
    m_keyboard.tap(Key::down);
    EXPECT_TRUE(m_desk.isSaved("pillStyle", "minimal"));
    tabTo(QStringLiteral("Show after release"));
    m_keyboard.tap(Key::home);
    EXPECT_TRUE(m_desk.isSaved("holdDuration", 0.0));
    tabTo(appearField);
    m_keyboard.type(QStringLiteral("60\n"));
    EXPECT_TRUE(m_desk.isSaved("animAppear", 0.55));
}

TEST_F(SettingsByHand, asksBeforeItResets) {
    open(R"({"model":"starter","dictateChords":[3]})");
    tabTo(QStringLiteral("Reset to defaults"));
    m_keyboard.tap(Key::space);
    static_cast<void>(control(QStringLiteral("Reset")));
    m_keyboard.tap(Key::escape);
    static_cast<void>(control(QStringLiteral("Reset to defaults")));
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {3}));
    click(QStringLiteral("Reset to defaults"));
    click(QStringLiteral("Reset"));
    EXPECT_TRUE(m_desk.isSaved("dictateChords", {12}));
}

}  // namespace
}  // namespace sayloft::test
