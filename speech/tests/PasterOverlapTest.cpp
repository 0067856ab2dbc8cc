// SPDX-License-Identifier: MIT
// Pastes that overlap, and the end of the paster within one.
#include "speech/tests/PasterTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST_F(PasterTest, aSecondPasteWithinTheDelayPutsBackTheFirstText) {
    m_paster.paste(QStringLiteral("first"), {});
    turnEventLoopFor(150ms);
    m_paster.paste(QStringLiteral("second"), {});
    ASSERT_TRUE(waitFor("restore first"));
    turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("first"));
}

TEST_F(PasterTest, anOvertakenRestoreNeverReplacesTheNewerText) {
    m_paster.paste(QStringLiteral("first"), {});
    turnEventLoopFor(150ms);
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("second"), {});
    turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("second"));
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore first"));
    EXPECT_FALSE(m_desktop.has("restore before"));
}

TEST_F(PasterTest, aSecondPasteThatIsToStayIsNotUndoneByTheFirst) {
    m_paster.paste(QStringLiteral("first"), {});
    m_paster.paste(QStringLiteral("second"), {.keepInClipboard = true});
    turnEventLoopFor(500ms);
    EXPECT_EQ(m_clipboard.content(), plainText("second"));
}

TEST_F(PasterTest, aTextThatIsCopiedMeanwhileIsNotReplacedByTheRestore) {
    m_paster.paste(QStringLiteral("first"), {});
    turnEventLoopFor(150ms);
    m_paster.copy(QStringLiteral("copied"));
    turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("copied"));
}

TEST_F(PasterTest, aTextThatIsCopiedBeforeTheTargetHasPastedIsNotReplacedEither) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("first"), {});
    ASSERT_TRUE(waitFor("set first"));
    m_paster.copy(QStringLiteral("copied"));
    m_clipboard.fetch();
    turnEventLoopFor(500ms);
    EXPECT_EQ(m_clipboard.content(), plainText("copied"));
}

TEST_F(PasterTest, thatEndsBeforeTheTargetHasPastedGivesTheClipboardBack) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("first"), {});
    ASSERT_TRUE(waitFor("set first"));
    m_paster.restoreForGood();
    EXPECT_TRUE(m_desktop.has("restore before"));
}

TEST_F(PasterTest, aPasteThatComesAfterTheRestoreSeesTheUsersClipboard) {
    m_paster.paste(QStringLiteral("first"), {});
    ASSERT_TRUE(waitFor("restore before"));
    m_desktop.events.clear();
    m_paster.paste(QStringLiteral("second"), {});
    ASSERT_TRUE(waitFor("restore before"));
}

TEST_F(PasterTest, neverMixesTheKeysOfTwoPastes) {
    m_clipboard.fetches = Answer::whenTold;
    m_paster.paste(QStringLiteral("first"), {.pressEnter = true});
    m_paster.paste(QStringLiteral("second"), {.pressEnter = true});
    turnEventLoopFor(50ms);
    EXPECT_FALSE(m_desktop.has("set second"));
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("set second"));
    m_clipboard.fetch();
    ASSERT_TRUE(waitFor("restore first"));
    EXPECT_THAT(m_desktop.happened(),
                ElementsAre("snapshot", "set first", pasteKey, returnKey, "snapshot", "set second",
                            pasteKey, returnKey, "restore first"));
}

TEST_F(PasterTest, answersThatComeAfterItsEndDoNothing) {
    m_clipboard.fetches = Answer::whenTold;
    {
        Paster shortLived(m_clipboard, m_keyPoster);
        shortLived.paste(QStringLiteral("words"), {.pressEnter = true});
    }
    m_clipboard.fetch();
    turnEventLoopFor(400ms);
    EXPECT_THAT(m_desktop.happened(), ElementsAre("snapshot", "set words", pasteKey));
}

}  // namespace
}  // namespace sayloft::test
