// SPDX-License-Identifier: MIT
#include "speech/tests/PasterTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST_F(PasterTest, leavesTheClipboardAndTheKeyboardAloneForAnEmptyText) {
    m_paster.paste(QString(), {.pressEnter = true});
    turnEventLoopFor(400ms);
    EXPECT_TRUE(m_desktop.events.empty());
}

TEST_F(PasterTest, preparesTheSnapshotWhenAPasteIsAboutToCome) {
    m_paster.prepare();
    EXPECT_THAT(m_desktop.happened(), ElementsAre("prepare"));
}

TEST_F(PasterTest, takesTheClipboardPressesThePasteKeyAndPutsTheClipboardBack) {
    m_paster.paste(QStringLiteral("words"), {});
    ASSERT_TRUE(waitFor("restore before"));
    EXPECT_THAT(m_desktop.happened(),
                ElementsAre("snapshot", "set words", pasteKey, "restore before"));
    EXPECT_GE(m_desktop.between(2, 3), 299ms);
    EXPECT_LT(m_desktop.between(2, 3), 500ms);
}

TEST_F(PasterTest, leavesTheTextOnTheClipboardWhenItIsToStayThere) {
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = true});
    turnEventLoopFor(500ms);
    EXPECT_THAT(m_desktop.happened(), ElementsAre("set words", pasteKey));
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
}

TEST_F(PasterTest, marksOnlyATextThatIsToGoAgain) {
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = true});
    m_paster.paste(QStringLiteral("words"), {.keepInClipboard = false});
    EXPECT_THAT(m_clipboard.stays, ElementsAre(ClipboardStay::forGood, ClipboardStay::forOnePaste));
}

TEST_F(PasterTest, givesBackOnTheWayOutWhatWaitsForItsTime) {
    m_paster.paste(QStringLiteral("words"), {});
    m_paster.restoreForGood();
    EXPECT_EQ(m_clipboard.content(), plainText("before"));
    m_clipboard.putByUser(plainText("newer"));
    turnEventLoopFor(400ms);
    EXPECT_EQ(m_clipboard.content(), plainText("newer"));
}

TEST_F(PasterTest, readsTheClipboardOnlyWhenTheKeysCanBeTyped) {
    m_keyPoster.isBusy = true;
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_TRUE(m_desktop.events.empty());
    m_clipboard.putByUser(plainText("copied meanwhile"));
    m_keyPoster.becomeReady();
    EXPECT_TRUE(waitFor("restore copied meanwhile"));
}

TEST_F(PasterTest, bringsAllTypesOfAnItemBackOnOneItem) {
    const ClipboardSnapshot imageWithText{
        .items = {{{.type = "image/png", .data = QByteArray("\x89PNG\0\x01", 6)},
                   {.type = "text/plain", .data = "a picture"}}}};
    m_clipboard.putByUser(imageWithText);
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
    EXPECT_TRUE(waitUntil([&] { return m_clipboard.content() == imageWithText; }, 1s));
}

TEST_F(PasterTest, emptiesAClipboardThatWasEmpty) {
    m_clipboard.putByUser({});
    m_paster.paste(QStringLiteral("words"), {});
    EXPECT_TRUE(waitFor("restore nothing", 1s));
    EXPECT_TRUE(m_clipboard.content().items.empty());
}

TEST_F(PasterTest, neverRestoresAClipboardThatCouldNotBeRead) {
    m_clipboard.hangOwner();
    m_paster.paste(QStringLiteral("words"), {});
    turnEventLoopFor(500ms);
    EXPECT_EQ(m_clipboard.content(), plainText("words"));
}

}  // namespace
}  // namespace sayloft::test
