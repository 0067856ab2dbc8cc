// SPDX-License-Identifier: MIT
// What a paste waits for, and how long.
#include "speech/tests/PasterTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST_F(PasterTest, pressesReturnThirtyMillisecondsAfterThePasteKey) {
    m_paster.paste(QStringLiteral("words"), {.pressEnter = true});
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_THAT(m_desktop.happened(),
                ElementsAre("snapshot", "set words", pasteKey, returnKey, "restore before"));
    EXPECT_GE(m_desktop.between(2, 3), 30ms);
    EXPECT_LT(m_desktop.between(2, 3), 150ms);
    EXPECT_GE(m_desktop.between(3, 4), 299ms);
}

TEST_F(PasterTest, pressesReturnOnlyAfterTheTargetHasTheText) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {.pressEnter = true});
    EXPECT_EQ(m_clipboard.fetchDeadline(), 2000ms);
    turnEventLoopFor(150ms);
    EXPECT_FALSE(m_desktop.has(returnKey));
    m_desktop.note("fetched");
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor(returnKey));
    EXPECT_GE(m_desktop.between(3, 4), 30ms);
}

TEST_F(PasterTest, doesNotTakeTheTextAwayFromATargetThatIsLate) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    turnEventLoopFor(700ms);
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
    m_desktop.note("fetched");
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_GE(m_desktop.between(3, 4), 49ms);
    EXPECT_LT(m_desktop.between(3, 4), 250ms);
}

TEST_F(PasterTest, restoresTheClipboardAtOnceWhenNobodyHasFetchedForTwoSeconds) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    turnEventLoopFor(2010ms);
    m_desktop.note("gave up");
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_LT(m_desktop.between(3, 4), 40ms);
}

TEST_F(PasterTest, waitsForTheSnapshotBeforeItReplacesTheClipboard) {
    m_clipboard.snapshots = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_THAT(m_desktop.happened(), ElementsAre("snapshot"));
    m_clipboard.answerSnapshot();
    ASSERT_TRUE(waitFor("restore before"));
}

TEST_F(PasterTest, countsTheTimeToTheRestoreFromTheMomentTheKeysAreOut) {
    m_keyPoster.keys = Answer::whenTold;
    m_paster.paste(QStringLiteral("words"), {});
    turnEventLoopFor(400ms);
    EXPECT_FALSE(m_desktop.has("restore before"));
    m_desktop.note("posted");
    m_keyPoster.answer();
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_GE(m_desktop.between(3, 4), 299ms);
}

}  // namespace
}  // namespace sayloft::test
