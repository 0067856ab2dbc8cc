// SPDX-License-Identifier: MIT
#include "platform/linux/ModifierWatchX11.h"

#include "platform/Mods.h"
#include "tests/support/RestartableXServer.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::TestKeyboard;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint8_t shiftMask = 1;
constexpr std::uint64_t shiftCommand = KeyFlag::shift | KeyFlag::command;

class ModifierWatchX11Test : public testing::Test {
protected:
    ModifierWatchX11Test() {
        if (!m_watch.start([this](std::uint64_t flags) { m_reports.push_back(flags); }))
            throw std::runtime_error("the watch did not start");
    }

    /// Everything reported since the last call. Waits until the watch has seen all that the server
    /// has done so far, by a change that it has to report.
    [[nodiscard]] std::vector<std::uint64_t> reports() {
        m_keyboard.press(TestKeyboard::controlRight);
        const bool pressSeen = test::waitUntil([this] { return endsWithControl(); });
        m_keyboard.release(TestKeyboard::controlRight);
        const bool releaseSeen = test::waitUntil([this] { return !endsWithControl(); });
        EXPECT_TRUE(pressSeen && releaseSeen);
        m_reports.resize(m_reports.size() - 2);
        return std::exchange(m_reports, {});
    }

    [[nodiscard]] bool endsWithControl() const {
        return !m_reports.empty() && (m_reports.back() & KeyFlag::control) != 0;
    }

    test::XServer m_server;
    TestKeyboard m_keyboard;
    std::vector<std::uint64_t> m_reports;
    ModifierWatchX11 m_watch;
};

struct ModifierRow {
    const char* description;
    TestKeyboard::Key key;
    std::uint64_t flag;
};

class EachModifierKey : public ModifierWatchX11Test,
                        public testing::WithParamInterface<ModifierRow> {};

TEST_P(EachModifierKey, isReportedWhenItGoesDownAndWhenItComesUp) {
    m_keyboard.tap(GetParam().key);
    EXPECT_THAT(reports(), ElementsAre(GetParam().flag, 0));
}

INSTANTIATE_TEST_SUITE_P(
    ModifierWatchX11, EachModifierKey,
    testing::Values(ModifierRow{"leftShift", TestKeyboard::shiftLeft, KeyFlag::shift},
                    ModifierRow{"rightShift", TestKeyboard::shiftRight, KeyFlag::shift},
                    ModifierRow{"leftControl", TestKeyboard::controlLeft, KeyFlag::control},
                    ModifierRow{"leftAlt", TestKeyboard::altLeft, KeyFlag::option},
                    ModifierRow{"rightAlt", TestKeyboard::altRight, KeyFlag::option},
                    ModifierRow{"leftSuper", TestKeyboard::superLeft, KeyFlag::command},
                    ModifierRow{"rightSuper", TestKeyboard::superRight, KeyFlag::command}),
    [](const auto& row) { return row.param.description; });

TEST_F(ModifierWatchX11Test, reportsTheWholeHeldSetAfterEveryChange) {
    m_keyboard.press(TestKeyboard::superRight);
    m_keyboard.press(TestKeyboard::shiftLeft);
    m_keyboard.release(TestKeyboard::superRight);
    m_keyboard.release(TestKeyboard::shiftLeft);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::command, shiftCommand, KeyFlag::shift, 0));
}

TEST_F(ModifierWatchX11Test, neverCountsCapsLockOrNumLock) {
    m_keyboard.tap(TestKeyboard::capsLock);
    m_keyboard.tap(TestKeyboard::numLock);
    ASSERT_NE(m_keyboard.lockedModifiers(), 0);
    m_keyboard.tap(TestKeyboard::superLeft);
    m_keyboard.press(TestKeyboard::capsLock);
    m_keyboard.release(TestKeyboard::capsLock);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::command, 0));
}

TEST_F(ModifierWatchX11Test, countsKeysThatAreDownAndNotModifiersThatStickyKeysLeaveOn) {
    m_keyboard.latch(shiftMask);
    m_keyboard.lock(shiftMask);
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ModifierWatchX11Test, seesNothingOfOtherKeys) {
    m_keyboard.tap(TestKeyboard::a);
    m_keyboard.tap(TestKeyboard::returnKey);
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ModifierWatchX11Test, reportsWhatIsHeldWhenItStarts) {
    m_keyboard.press(TestKeyboard::shiftLeft);
    std::vector<std::uint64_t> reported;
    ModifierWatchX11 late;
    ASSERT_TRUE(late.start([&](std::uint64_t flags) { reported.push_back(flags); }));
    EXPECT_THAT(reported, ElementsAre(KeyFlag::shift));
}

TEST_F(ModifierWatchX11Test, followsKeysThatTheUserHasExchanged) {
    m_keyboard.setOption(QStringLiteral("altwin:swap_alt_win"));
    m_keyboard.tap(TestKeyboard::altLeft);
    m_keyboard.tap(TestKeyboard::superLeft);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::command, 0, KeyFlag::option, 0));
}

TEST_F(ModifierWatchX11Test, followsAMapInWhichAltAndSuperHaveChangedTheirModifiers) {
    test::run(
        QStringLiteral("xmodmap"),
        {QStringLiteral("-e"), QStringLiteral("clear mod1"), QStringLiteral("-e"),
         QStringLiteral("clear mod4"), QStringLiteral("-e"), QStringLiteral("add mod4 = Alt_L"),
         QStringLiteral("-e"), QStringLiteral("add mod1 = Super_L")});
    m_keyboard.tap(TestKeyboard::altLeft);
    m_keyboard.tap(TestKeyboard::superLeft);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::option, 0, KeyFlag::command, 0));
}

TEST_F(ModifierWatchX11Test, takesTheWindowsKeyForCommandAlsoWhereItIsMeta) {
    m_keyboard.setOption(QStringLiteral("altwin:meta_win"));
    m_keyboard.tap(TestKeyboard::altLeft);
    m_keyboard.tap(TestKeyboard::superLeft);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::option, 0, KeyFlag::command, 0));
}

TEST_F(ModifierWatchX11Test, doesNotTakeAltGrForAlt) {
    m_keyboard.setLayouts(QStringLiteral("de"));
    m_keyboard.tap(TestKeyboard::altRight);
    m_keyboard.tap(TestKeyboard::altLeft);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::option, 0));
}

TEST_F(ModifierWatchX11Test, reportsNothingOfWhatIsInjected) {
    m_watch.beginInjection();
    m_keyboard.tapWith(TestKeyboard::controlLeft, TestKeyboard::v);
    m_watch.endInjection();
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ModifierWatchX11Test, reportsNothingOfAnInjectionDuringWhichTheEventLoopTurns) {
    m_watch.beginInjection();
    m_keyboard.tapWith(TestKeyboard::controlLeft, TestKeyboard::v);
    test::turnEventLoopFor(30ms);
    m_watch.endInjection();
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(ModifierWatchX11Test, reportsWhatTheUserDidDuringAnInjectionAtItsEnd) {
    m_keyboard.press(TestKeyboard::superLeft);
    EXPECT_TRUE(test::waitUntil([this] { return !m_reports.empty(); }));
    m_reports.clear();
    m_watch.beginInjection();
    m_keyboard.tap(TestKeyboard::controlLeft);
    m_keyboard.press(TestKeyboard::shiftLeft);
    m_watch.endInjection();
    EXPECT_THAT(m_reports, ElementsAre(shiftCommand));
}

TEST_F(ModifierWatchX11Test, reportsWhatCameBeforeAnInjectionBeforeIt) {
    m_keyboard.press(TestKeyboard::superLeft);
    m_keyboard.press(TestKeyboard::shiftLeft);
    m_keyboard.release(TestKeyboard::shiftLeft);
    m_watch.beginInjection();
    EXPECT_THAT(m_reports, ElementsAre(KeyFlag::command, shiftCommand, KeyFlag::command));
    m_watch.endInjection();
}

TEST_F(ModifierWatchX11Test, anInjectionWithinAnotherEndsWithTheOuterOne) {
    m_watch.beginInjection();
    m_watch.beginInjection();
    m_watch.endInjection();
    m_keyboard.press(TestKeyboard::shiftLeft);
    test::turnEventLoopFor(30ms);
    EXPECT_THAT(m_reports, IsEmpty());
    m_watch.endInjection();
    EXPECT_THAT(m_reports, ElementsAre(KeyFlag::shift));
}

TEST_F(ModifierWatchX11Test, followsAMapThatChangesDuringAnInjection) {
    m_watch.beginInjection();
    m_keyboard.setOption(QStringLiteral("altwin:swap_alt_win"));
    m_watch.endInjection();
    m_keyboard.tap(TestKeyboard::altLeft);
    EXPECT_THAT(reports(), ElementsAre(KeyFlag::command, 0));
}

TEST_F(ModifierWatchX11Test, missesNoChangeOfManyAroundInjections) {
    for (int i = 0; i < 200; ++i) {
        m_keyboard.press(TestKeyboard::superLeft);
        m_watch.beginInjection();
        m_keyboard.tapWith(TestKeyboard::controlLeft, TestKeyboard::v);
        m_watch.endInjection();
        m_keyboard.release(TestKeyboard::superLeft);
    }
    const std::vector<std::uint64_t> seen = reports();
    ASSERT_EQ(seen.size(), 400U);
    for (std::size_t i = 0; i < seen.size(); ++i)
        ASSERT_EQ(seen[i], i % 2 == 0 ? KeyFlag::command : 0) << i;
}

TEST(ModifierWatchX11WithoutServer, doesNotStartAndMayBeTriedAgain) {
    ModifierWatchX11 watch;
    qputenv("DISPLAY", ":60001");
    EXPECT_FALSE(watch.start([](std::uint64_t) {}));
    const test::XServer server;
    EXPECT_TRUE(watch.start([](std::uint64_t) {}));
}

TEST(ModifierWatchX11LosingItsServer, countsHeldKeysAsReleasedAndReportsAgainAfterwards) {
    test::RestartableXServer server;
    std::vector<std::uint64_t> reported;
    ModifierWatchX11 watch;
    ASSERT_TRUE(watch.start([&](std::uint64_t flags) { reported.push_back(flags); }));
    const auto before = std::make_unique<TestKeyboard>();
    before->press(TestKeyboard::shiftLeft);
    ASSERT_TRUE(test::waitUntil([&] { return !reported.empty(); }));

    server.kill();
    ASSERT_TRUE(test::waitUntil([&] { return reported.size() == 2; }));
    EXPECT_THAT(reported, ElementsAre(KeyFlag::shift, 0));
    watch.beginInjection();
    watch.endInjection();

    server.startAgain();
    TestKeyboard after;
    after.press(TestKeyboard::superLeft);
    ASSERT_TRUE(test::waitUntil([&] { return reported.size() == 3; }));
    EXPECT_EQ(reported.back(), KeyFlag::command);
}

}  // namespace
}  // namespace sayloft
