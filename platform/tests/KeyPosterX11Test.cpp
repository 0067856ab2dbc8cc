// SPDX-License-Identifier: MIT
#include "platform/tests/KeyPosterX11Test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

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
    ASSERT_TRUE(waitUntil([&] { return order.size() == 3; }));
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
    ASSERT_TRUE(waitUntil([&] { return clipboardReady != nullptr; }));
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
    turnEventLoopFor(50ms);
    EXPECT_THAT(m_reports, IsEmpty());
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

    const XServer another;
    focusWindow();
    m_posted = 0;
    EXPECT_EQ(pasteEvents(), controlV());
}

TEST_F(KeyPosterX11Test, answersWhenTheServerGoesWhileItWaitsForHeldKeys) {
    focusWindow();
    m_keyboard.press(TestKeyboard::superLeft);
    startPaste();
    turnEventLoopFor(50ms);
    m_server.program().signal(SIGKILL);
    EXPECT_TRUE(waitForPosted());
}

TEST(KeyPosterX11OnAServerWithoutXtest, answersAndTypesNothing) {
    const XServer server({.screen = QStringLiteral("640x480x24"),
                          .arguments = {QStringLiteral("-extension"), QStringLiteral("XTEST")}});
    ModifierWatchX11 watch;
    ASSERT_TRUE(watch.start([](std::uint64_t) {}));
    KeyPosterX11 poster(watch, {.onClipboard = [](const auto& ready) { ready(); },
                                .onPrimary = [](const auto& ready) { ready(); }});
    KeyWindow window;
    bool posted = false;
    poster.postKey(VirtualKey::v, KeyFlag::command, [&] { posted = true; });
    EXPECT_TRUE(waitUntil([&] { return posted; }));
    EXPECT_THAT(window.events(), IsEmpty());
}

TEST_F(KeyPosterX11Test, mayBeDestroyedWhileItWaits) {
    auto poster = std::make_unique<KeyPosterX11>(m_watch, noteOffers());
    m_keyboard.press(TestKeyboard::superLeft);
    poster->postKey(VirtualKey::v, KeyFlag::command, [this] { ++m_posted; });
    poster.reset();
    turnEventLoopFor(50ms);
    EXPECT_EQ(m_posted, 0);
}

}  // namespace
}  // namespace sayloft::test
