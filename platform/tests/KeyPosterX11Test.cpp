// SPDX-License-Identifier: MIT
#include "platform/linux/KeyPosterX11.h"

#include "platform/Mods.h"
#include "platform/linux/ModifierWatchX11.h"
#include "tests/support/KeyWindow.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::KeyWindow;
using test::TestKeyboard;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint8_t shiftMask = 1;
constexpr std::uint8_t lockMask = 2;
constexpr std::uint8_t controlMask = 4;
constexpr std::uint8_t numLockMask = 16;

using Events = std::vector<KeyWindow::KeyEvent>;

Events chord(std::uint8_t modifierKey, std::uint8_t modifierMask, std::uint8_t key,
             std::uint8_t locked = 0) {
    const auto with = static_cast<std::uint16_t>(modifierMask | locked);
    return {{KeyWindow::KeyEvent::press, modifierKey, locked},
            {KeyWindow::KeyEvent::press, key, with},
            {KeyWindow::KeyEvent::release, key, with},
            {KeyWindow::KeyEvent::release, modifierKey, with}};
}

Events controlV(std::uint8_t locked = 0) {
    return chord(TestKeyboard::controlLeft, controlMask, TestKeyboard::v, locked);
}

Events shiftInsert() {
    return chord(TestKeyboard::shiftLeft, shiftMask, TestKeyboard::insert);
}

class KeyPosterX11Test : public testing::Test {
protected:
    KeyPosterX11Test() {
        if (!m_watch.start([this](std::uint64_t flags) { m_reports.push_back(flags); }))
            throw std::runtime_error("the watch did not start");
    }

    void focusWindow(const QByteArray& windowClass = "Editor") {
        m_window = std::make_unique<KeyWindow>(windowClass);
    }

    void startPaste() {
        m_poster.postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    }

    [[nodiscard]] bool waitForPosted(std::chrono::milliseconds deadline = 5s) {
        return test::waitUntil([this] { return m_posted > 0; }, deadline);
    }

    /// The events that one paste makes in the focused window.
    [[nodiscard]] Events pasteEvents() {
        m_window->clear();
        startPaste();
        EXPECT_TRUE(waitForPosted());
        return m_window->events();
    }

    KeyPosterX11::PasteOffer noteOffers() {
        return {.onClipboard =
                    [this](const KeyPosterX11::Ready& ready) {
                        m_offers.emplace_back("clipboard");
                        ready();
                    },
                .onPrimary =
                    [this](const KeyPosterX11::Ready& ready) {
                        m_offers.emplace_back("primary");
                        ready();
                    }};
    }

    test::XServer m_server;
    TestKeyboard m_keyboard;
    std::vector<std::uint64_t> m_reports;
    std::vector<std::string> m_offers;
    int m_posted = 0;
    ModifierWatchX11 m_watch;
    KeyPosterX11 m_poster{m_watch, noteOffers()};
    std::unique_ptr<KeyWindow> m_window;
};

TEST_F(KeyPosterX11Test, pastesWithControlV) {
    focusWindow();
    EXPECT_EQ(pasteEvents(), controlV());
    EXPECT_THAT(m_offers, ElementsAre("clipboard"));
}

TEST_F(KeyPosterX11Test, pastesIntoATerminalWithShiftInsertFromPrimary) {
    focusWindow("XTerm");
    EXPECT_EQ(pasteEvents(), shiftInsert());
    EXPECT_THAT(m_offers, ElementsAre("primary"));
}

TEST_F(KeyPosterX11Test, pressesReturnWithoutAnyModifier) {
    focusWindow();
    m_poster.postKey(VirtualKey::returnKey, 0, [this] { ++m_posted; });
    ASSERT_TRUE(waitForPosted());
    EXPECT_EQ(m_window->events(),
              (Events{{KeyWindow::KeyEvent::press, TestKeyboard::returnKey, 0},
                      {KeyWindow::KeyEvent::release, TestKeyboard::returnKey, 0}}));
    EXPECT_THAT(m_offers, IsEmpty());
}

TEST_F(KeyPosterX11Test, postsKeysInTheOrderOfTheCalls) {
    focusWindow();
    std::vector<int> order;
    m_poster.postKey(VirtualKey::v, KeyFlag::command, [&] { order.push_back(1); });
    m_poster.postKey(VirtualKey::returnKey, 0, [&] { order.push_back(2); });
    m_poster.postKey(VirtualKey::v, KeyFlag::command, [&] { order.push_back(3); });
    ASSERT_TRUE(test::waitUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
    ASSERT_EQ(m_window->events().size(), 10U);
    EXPECT_EQ(m_window->events()[4].key, TestKeyboard::returnKey);
}

TEST_F(KeyPosterX11Test, waitsForTheOfferAndLooksForTheFocusAfterIt) {
    focusWindow();
    KeyPosterX11::Ready clipboardReady;
    KeyPosterX11 poster(m_watch,
                        {.onClipboard = [&](auto ready) { clipboardReady = std::move(ready); },
                         .onPrimary = [](const auto& ready) { ready(); }});
    poster.postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    ASSERT_TRUE(test::waitUntil([&] { return clipboardReady != nullptr; }));
    EXPECT_EQ(m_posted, 0);
    focusWindow("Xfce4-terminal");
    clipboardReady();
    ASSERT_TRUE(waitForPosted());
    EXPECT_EQ(m_window->events(), shiftInsert());
}

TEST_F(KeyPosterX11Test, postsNothingForKeysThatItDoesNotKnow) {
    focusWindow();
    m_poster.postKey(0, KeyFlag::command, [this] { ++m_posted; });
    ASSERT_TRUE(waitForPosted());
    EXPECT_THAT(m_window->events(), IsEmpty());
}

TEST_F(KeyPosterX11Test, isNotSeenByTheWatch) {
    focusWindow();
    static_cast<void>(pasteEvents());
    test::turnEventLoopFor(50ms);
    EXPECT_THAT(m_reports, IsEmpty());
}

struct LayoutRow {
    const char* description;
    const char* layouts;
    std::uint8_t active;
    std::uint8_t modifier;
    std::uint8_t key;
};

class EachLayout : public KeyPosterX11Test, public testing::WithParamInterface<LayoutRow> {};

TEST_P(EachLayout, isPastedIntoByTheKeyThatMeansPasteThere) {
    m_keyboard.setLayouts(QString::fromLatin1(GetParam().layouts), GetParam().active);
    focusWindow();
    const Events events = pasteEvents();
    ASSERT_EQ(events.size(), 4U);
    EXPECT_EQ(events[0].key, GetParam().modifier);
    EXPECT_EQ(events[1].key, GetParam().key);
    EXPECT_EQ(m_keyboard.activeLayout(), GetParam().active);
}

constexpr std::uint8_t dvorakV = 60;
INSTANTIATE_TEST_SUITE_P(
    KeyPosterX11, EachLayout,
    testing::Values(
        LayoutRow{"us", "us", 0, TestKeyboard::controlLeft, TestKeyboard::v},
        LayoutRow{"dvorak", "us(dvorak)", 0, TestKeyboard::controlLeft, dvorakV},
        LayoutRow{"secondOfTwoLatin", "us,us(dvorak)", 1, TestKeyboard::controlLeft, dvorakV},
        LayoutRow{"russianBeforeLatin", "ru,us", 0, TestKeyboard::controlLeft, TestKeyboard::v},
        LayoutRow{"russianAfterLatin", "us,ru", 1, TestKeyboard::controlLeft, TestKeyboard::v},
        LayoutRow{"russianAfterDvorak", "us(dvorak),ru", 1, TestKeyboard::controlLeft, dvorakV},
        LayoutRow{"russianOnly", "ru", 0, TestKeyboard::shiftLeft, TestKeyboard::insert},
        LayoutRow{"greekOnly", "gr", 0, TestKeyboard::shiftLeft, TestKeyboard::insert}),
    [](const auto& row) { return row.param.description; });

TEST_F(KeyPosterX11Test, followsALayoutThatChangesBetweenTwoPastes) {
    focusWindow();
    EXPECT_EQ(pasteEvents()[1].key, TestKeyboard::v);
    m_keyboard.setLayouts(QStringLiteral("us(dvorak)"));
    m_posted = 0;
    EXPECT_EQ(pasteEvents()[1].key, dvorakV);
}

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
    test::turnEventLoopFor(300ms);
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
    test::turnEventLoopFor(1800ms);
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
    test::turnEventLoopFor(1800ms);
    EXPECT_EQ(m_posted, 0);
    m_keyboard.release(TestKeyboard::superLeft);
    EXPECT_TRUE(waitForPosted(500ms));
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
    test::turnEventLoopFor(100ms);
    EXPECT_EQ(m_posted, 0);
    m_keyboard.release(TestKeyboard::superLeft);
    m_window->clear();
    ASSERT_TRUE(waitForPosted());
    EXPECT_THAT(m_offers, ElementsAre("primary", "primary"));
    EXPECT_EQ(m_window->events(), shiftInsert());
}

TEST_F(KeyPosterX11Test, answersWhenTheServerIsGoneAndTypesWhenThereIsOneAgain) {
    focusWindow();
    startPaste();
    ASSERT_TRUE(waitForPosted());
    m_server.program().signal(SIGKILL);
    ASSERT_TRUE(m_server.program().waitForEnd(5s));
    m_posted = 0;
    startPaste();
    EXPECT_TRUE(waitForPosted());

    const test::XServer another;
    focusWindow();
    m_posted = 0;
    EXPECT_EQ(pasteEvents(), controlV());
}

TEST_F(KeyPosterX11Test, answersWhenTheServerGoesWhileItWaitsForHeldKeys) {
    focusWindow();
    m_keyboard.press(TestKeyboard::superLeft);
    startPaste();
    test::turnEventLoopFor(50ms);
    m_server.program().signal(SIGKILL);
    EXPECT_TRUE(waitForPosted());
}

TEST(KeyPosterX11OnAServerWithoutXtest, answersAndTypesNothing) {
    const test::XServer server(
        {.screen = QStringLiteral("640x480x24"),
         .arguments = {QStringLiteral("-extension"), QStringLiteral("XTEST")}});
    ModifierWatchX11 watch;
    ASSERT_TRUE(watch.start([](std::uint64_t) {}));
    KeyPosterX11 poster(watch, {.onClipboard = [](const auto& ready) { ready(); },
                                .onPrimary = [](const auto& ready) { ready(); }});
    KeyWindow window;
    bool posted = false;
    poster.postKey(VirtualKey::v, KeyFlag::command, [&] { posted = true; });
    EXPECT_TRUE(test::waitUntil([&] { return posted; }));
    EXPECT_THAT(window.events(), IsEmpty());
}

TEST_F(KeyPosterX11Test, mayBeDestroyedWhileItWaits) {
    auto poster = std::make_unique<KeyPosterX11>(m_watch, noteOffers());
    m_keyboard.press(TestKeyboard::superLeft);
    poster->postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    poster.reset();
    test::turnEventLoopFor(50ms);
    EXPECT_EQ(m_posted, 0);
}

}  // namespace
}  // namespace sayloft
