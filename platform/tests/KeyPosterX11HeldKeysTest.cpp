// SPDX-License-Identifier: MIT
// Pasting while the user holds or has locked modifiers.
#include "platform/tests/KeyPosterX11Test.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <thread>
#include <utility>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST_F(KeyPosterX11Test, leavesCapsLockAndNumLockAsTheyAre) {
    m_keyboard.tap(TestKeyboard::capsLock);
    m_keyboard.tap(TestKeyboard::numLock);
    focusWindow();
    EXPECT_EQ(pasteEvents(), controlV(lockMask | numLockMask));
    EXPECT_EQ(m_keyboard.lockedModifiers(), lockMask | numLockMask);
}

TEST_F(KeyPosterX11Test, doesNotWaitForAHeldCapsLockKey) {
    m_keyboard.press(TestKeyboard::capsLock);
    focusWindow();
    startPaste();
    EXPECT_TRUE(waitForPosted(500ms));
}

TEST_F(KeyPosterX11Test, keepsAModifierLatchedForTheNextKeyOutOfThePaste) {
    focusWindow();
    m_keyboard.latch(shiftMask);
    ASSERT_EQ(m_keyboard.latchedModifiers(), shiftMask);
    EXPECT_EQ(pasteEvents(), controlV());
}

TEST_F(KeyPosterX11Test, keepsALockedShiftOutOfThePasteAndLocksItAgain) {
    focusWindow();
    m_keyboard.lock(shiftMask);
    EXPECT_EQ(pasteEvents(), controlV());
    EXPECT_EQ(m_keyboard.lockedModifiers(), shiftMask);
}

TEST_F(KeyPosterX11Test, waitsUntilTheUserHasLetGoOfTheModifiers) {
    focusWindow();
    m_keyboard.press(TestKeyboard::superLeft);
    m_keyboard.press(TestKeyboard::shiftLeft);
    startPaste();
    turnEventLoopFor(300ms);
    EXPECT_EQ(m_posted, 0);
    m_keyboard.release(TestKeyboard::shiftLeft);
    m_keyboard.release(TestKeyboard::superLeft);
    m_window->clear();
    ASSERT_TRUE(waitForPosted(500ms));
    EXPECT_EQ(m_window->events(), controlV());
}

TEST_F(KeyPosterX11Test, releasesWhatIsStillHeldAfterASecondAndAHalfAndLeavesItReleased) {
    focusWindow();
    m_keyboard.press(TestKeyboard::superLeft);
    m_keyboard.press(TestKeyboard::shiftRight);
    QElapsedTimer elapsed;
    elapsed.start();
    startPaste();
    ASSERT_TRUE(waitForPosted());
    EXPECT_GE(elapsed.elapsed(), 1500);
    EXPECT_LT(elapsed.elapsed(), 2000);
    EXPECT_EQ(m_keyboard.heldModifiers(), 0);
    const Events events = m_window->events();
    const KeyWindow::KeyEvent pasteKey{KeyWindow::KeyEvent::press, TestKeyboard::v, controlMask};
    EXPECT_THAT(events, testing::Contains(pasteKey));
}

TEST_F(KeyPosterX11Test, pressesControlBeforeItReleasesASuperThatWouldOpenTheLauncher) {
    focusWindow();
    m_keyboard.press(TestKeyboard::superLeft);
    const Events events = pasteEvents();
    ASSERT_EQ(events.size(), 5U);
    EXPECT_EQ(events[0].key, TestKeyboard::controlLeft);
    EXPECT_EQ(events[1].key, TestKeyboard::superLeft);
    EXPECT_EQ(events[1].kind, KeyWindow::KeyEvent::release);
}

TEST_F(KeyPosterX11Test, typesTheWholeChordWhereTheUserHoldsControlItself) {
    focusWindow();
    m_keyboard.press(TestKeyboard::controlLeft);
    const Events events = pasteEvents();
    ASSERT_EQ(events.size(), 5U);
    EXPECT_EQ(Events(events.begin() + 1, events.end()), controlV());
}

TEST_F(KeyPosterX11Test, releasesTheKeysOfTheUserOnlyWhenItMay) {
    bool dictating = true;
    m_poster.setMayReleaseHeldKeys([&] { return !dictating; });
    focusWindow();
    m_keyboard.press(TestKeyboard::superLeft);
    startPaste();
    turnEventLoopFor(1800ms);
    EXPECT_EQ(m_posted, 0);
    EXPECT_NE(m_keyboard.heldModifiers(), 0);
    dictating = false;
    EXPECT_TRUE(waitForPosted(500ms));
    EXPECT_EQ(m_keyboard.heldModifiers(), 0);
}

TEST_F(KeyPosterX11Test, doesNotCutADictationThatBeginsInTheLastMoment) {
    bool dictating = false;
    bool pressed = false;
    ModifierWatchX11 watch;
    ASSERT_TRUE(watch.start([&](std::uint64_t flags) { dictating = flags == KeyFlag::command; }));
    // The key goes down while the poster is getting the text offered, and the watch has not heard
    // of it when the time to wait has passed.
    KeyPosterX11 poster(watch, {.onClipboard =
                                    [&](const auto& ready) {
                                        if (!std::exchange(pressed, true))
                                            m_keyboard.press(TestKeyboard::superLeft);
                                        ready();
                                    },
                                .onPrimary = [](const auto& ready) { ready(); }});
    poster.setMayReleaseHeldKeys([&] { return !dictating; });
    focusWindow();
    poster.postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    turnEventLoopFor(1800ms);
    EXPECT_EQ(m_posted, 0);
    m_keyboard.release(TestKeyboard::superLeft);
    EXPECT_TRUE(waitForPosted(500ms));
}

TEST_F(KeyPosterX11Test, neverReleasesAKeyThatGoesDownAfterTheLastLook) {
    bool pressed = false;
    // Asked for as the last thing before the injector's own look at the keys.
    m_poster.setMayReleaseHeldKeys([&] {
        if (!std::exchange(pressed, true))
            m_keyboard.press(TestKeyboard::superLeft);
        return true;
    });
    focusWindow();
    startPaste();
    turnEventLoopFor(300ms);
    EXPECT_EQ(m_posted, 0);
    EXPECT_NE(m_keyboard.heldModifiers(), 0);
    m_keyboard.release(TestKeyboard::superLeft);
    m_window->clear();
    ASSERT_TRUE(waitForPosted(500ms));
    EXPECT_EQ(m_window->events(), controlV());
}

TEST_F(KeyPosterX11Test, typesNothingElseWhenTheUserPressesAModifierAtThatVeryMoment) {
    const auto isPasteKey = [](const KeyWindow::KeyEvent& event) {
        return event.kind == KeyWindow::KeyEvent::press && event.key == TestKeyboard::v;
    };
    const KeyWindow::KeyEvent pasteKey{KeyWindow::KeyEvent::press, TestKeyboard::v, controlMask};
    focusWindow();
    std::jthread restless([](const std::stop_token& stop) {
        TestKeyboard hands;
        while (!stop.stop_requested()) {
            hands.tap(TestKeyboard::superLeft);
            std::this_thread::sleep_for(200us);
        }
    });
    constexpr int pastes = 300;
    for (int i = 0; i < pastes; ++i) {
        m_posted = 0;
        startPaste();
        ASSERT_TRUE(waitForPosted());
    }
    restless.request_stop();
    restless.join();
    Events typed;
    std::ranges::copy_if(m_window->events(), std::back_inserter(typed), isPasteKey);
    EXPECT_THAT(typed, testing::AllOf(testing::SizeIs(pastes), testing::Each(pasteKey)));
}

TEST_F(KeyPosterX11Test, getsTheTextOfferedAgainWhenItHadToWaitAfterTheOffer) {
    KeyPosterX11 poster(m_watch, {.onClipboard = [](const auto& ready) { ready(); },
                                  .onPrimary =
                                      [&](const auto& ready) {
                                          m_offers.emplace_back("primary");
                                          if (m_offers.size() == 1)
                                              m_keyboard.press(TestKeyboard::superLeft);
                                          ready();
                                      }});
    focusWindow("XTerm");
    poster.postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    turnEventLoopFor(100ms);
    EXPECT_EQ(m_posted, 0);
    m_keyboard.release(TestKeyboard::superLeft);
    m_window->clear();
    ASSERT_TRUE(waitForPosted());
    EXPECT_THAT(m_offers, ElementsAre("primary", "primary"));
    EXPECT_EQ(m_window->events(), shiftInsert());
}

}  // namespace
}  // namespace sayloft::test
