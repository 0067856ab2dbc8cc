// SPDX-License-Identifier: MIT
// The window of a first run, with nothing there yet: no configuration, model, network or sound.
#include "tests/outside/Controls.h"
#include "tests/support/WaitUntil.h"

#include <vector>

#include <gmock/gmock.h>

namespace sayloft::test {
namespace {

using Key = TestKeyboard::Key;

const QString window = WindowDesk::onboarding;
const QString customize = QStringLiteral("Customize hotkeys…");
const QString download = QStringLiteral("Download model");
const QString done = QStringLiteral("Done");
const QString useStarter = QStringLiteral("Use Starter");
const QString useInSettings = QStringLiteral("Use Starter — English, offline, lower accuracy");
using roles::button;

class Onboarding : public testing::Test {
protected:
    Onboarding() {
        m_desk.startSayloft({});
        static_cast<void>(m_desk.windows().window(window));
        // The download that it begins with.
        EXPECT_TRUE(
            m_desk.sayloft().waitForLog(QStringLiteral("model download multilingual: FAILED")));
        EXPECT_TRUE(waitUntil([this] {
            return m_desk.control(window, download).is(AccessibleObject::State::sensitive);
        }));
    }

    [[nodiscard]] QString state(const char* step) const {
        return m_desk.windows().textAbout(window, QString::fromLatin1(step));
    }

    [[nodiscard]] bool saysThatTheModelIsReady() const {
        return m_desk.windows().says(window, QStringLiteral("State of the speech model"),
                                     QStringLiteral("✓ Ready"));
    }

    void expectDone() const {
        m_desk.windows().waitUntilGone(window);
        EXPECT_TRUE(m_desk.isSaved("model", "starter"));
        EXPECT_TRUE(m_desk.isSaved("dictateChords", {12}));
    }

    WindowDesk m_desk;
    TestKeyboard& m_keyboard = m_desk.keyboard();
};

TEST_F(Onboarding, tellsAssistiveTechnologyItsControlsAndTheWayThroughThem) {
    const std::vector<Control> controls{{QStringLiteral("Grant microphone"), button},
                                        {download, button},
                                        {useStarter, button},
                                        {customize, button},
                                        {done, button}};
    EXPECT_EQ(m_desk.windows().window(window).role(), QStringLiteral("dialog"));
    EXPECT_THAT(controlsOf(m_desk, window), testing::ElementsAreArray(controls));
    EXPECT_EQ(state("State of the microphone"), QStringLiteral("✕ Not yet"));
    EXPECT_EQ(state("State of the keyboard's reach"), QStringLiteral("✓ Ready"));
    EXPECT_EQ(state("State of the speech model"), QStringLiteral("✕ Not yet"));
    const QStringList way = m_desk.walk(window);
    EXPECT_EQ(way, beginningWith(way.front(), titlesOf(controls)));
    EXPECT_EQ(m_desk.walk(window, Key::shiftLeft),
              beginningWith(way.front(), backwards(titlesOf(controls))));
}

TEST_F(Onboarding, isWalkedThroughByAssistiveTechnology) {
    m_desk.press(window, customize);
    static_cast<void>(m_desk.windows().window(WindowDesk::settings));
    m_desk.press(WindowDesk::settings, useInSettings);
    m_desk.keyboard().tapWith(Key::altLeft, Key::f4);
    EXPECT_TRUE(saysThatTheModelIsReady());
    m_desk.press(window, done);
    expectDone();
}

TEST_F(Onboarding, isWalkedThroughWithClicks) {
    m_desk.click(window, customize);
    m_desk.click(WindowDesk::settings, useInSettings);
    EXPECT_TRUE(m_desk.isSaved("model", "starter"));
    // The sign at the end of the title closes the window.
    const QRect settings = m_desk.windows().window(WindowDesk::settings).place();
    m_desk.pointer().click(settings.topRight() + QPoint(-9, -9));
    m_desk.windows().waitUntilGone(WindowDesk::settings);
    EXPECT_TRUE(saysThatTheModelIsReady());
    m_desk.click(window, done);
    expectDone();
}

TEST_F(Onboarding, isWalkedThroughWithTheKeyboardAlone) {
    m_desk.tabTo(window, customize);
    m_keyboard.tap(Key::space);
    m_desk.tabTo(WindowDesk::settings, useInSettings);
    m_keyboard.tap(Key::space);
    EXPECT_TRUE(m_desk.isSaved("model", "starter"));
    m_keyboard.tapWith(Key::controlLeft, Key::w);
    m_desk.windows().waitUntilGone(WindowDesk::settings);
    EXPECT_TRUE(saysThatTheModelIsReady());
    m_keyboard.tap(Key::returnKey);
    expectDone();
}

TEST_F(Onboarding, takesTheStarterModelWithOneClick) {
    m_desk.click(window, useStarter);
    EXPECT_TRUE(saysThatTheModelIsReady());
    EXPECT_EQ(titlesOf(controlsOf(m_desk, window)),
              (QStringList{QStringLiteral("Grant microphone"), customize, done}));
    m_keyboard.tap(Key::returnKey);
    m_desk.windows().waitUntilGone(window);
    EXPECT_TRUE(m_desk.isSaved("model", "starter"));
}

}  // namespace
}  // namespace sayloft::test
