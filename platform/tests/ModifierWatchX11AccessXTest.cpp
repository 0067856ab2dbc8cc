// SPDX-License-Identifier: MIT
// Modifiers of users who have switched on help for the disabled (AccessX). The server's filter for
// it sees keys that are pressed by XTEST as it sees those of a real keyboard.
#include "platform/linux/ModifierWatchX11.h"

#include "platform/Mods.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr std::uint64_t shiftCommand = KeyFlag::shift | KeyFlag::command;

class ModifierWatchX11WithAccessX : public testing::Test {
protected:
    ModifierWatchX11WithAccessX() {
        if (!m_watch.start([this](std::uint64_t flags) { m_reports.push_back(flags); }))
            throw std::runtime_error("the watch did not start");
    }

    [[nodiscard]] bool waitForReport(std::uint64_t flags) {
        return waitUntil([=, this] { return !m_reports.empty() && m_reports.back() == flags; });
    }

    XServer m_server;
    TestKeyboard m_keyboard;
    std::vector<std::uint64_t> m_reports;
    ModifierWatchX11 m_watch;
};

TEST_F(ModifierWatchX11WithAccessX, seesAChordOnceThoughHoldingItsShiftTurnsSlowKeysOn) {
    m_keyboard.enableAccessXKeys();
    m_keyboard.press(TestKeyboard::superLeft);
    m_keyboard.press(TestKeyboard::shiftLeft);
    ASSERT_TRUE(waitUntil([this] { return m_keyboard.hasSlowKeys(); }, 12s));
    turnEventLoopFor(500ms);
    EXPECT_THAT(m_reports, ElementsAre(KeyFlag::command, shiftCommand));
    m_keyboard.release(TestKeyboard::shiftLeft);
    m_keyboard.release(TestKeyboard::superLeft);
    EXPECT_TRUE(waitForReport(0));
    turnEventLoopFor(500ms);
    EXPECT_THAT(m_reports, ElementsAre(KeyFlag::command, shiftCommand, KeyFlag::command, 0));
}

TEST_F(ModifierWatchX11WithAccessX, seesAChordThatIsPressedSlowlyWhileSlowKeysAreOn) {
    m_keyboard.enableSlowKeys();
    m_keyboard.press(TestKeyboard::superLeft);
    ASSERT_TRUE(waitForReport(KeyFlag::command));
    m_keyboard.press(TestKeyboard::shiftLeft);
    ASSERT_TRUE(waitForReport(shiftCommand));
    m_keyboard.release(TestKeyboard::shiftLeft);
    m_keyboard.release(TestKeyboard::superLeft);
    EXPECT_TRUE(waitForReport(0));
    EXPECT_THAT(m_reports, ElementsAre(KeyFlag::command, shiftCommand, KeyFlag::command, 0));
}

}  // namespace
}  // namespace sayloft::test
