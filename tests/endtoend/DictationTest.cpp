// SPDX-License-Identifier: MIT
#include "tests/endtoend/Dictation.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/Xclip.h"

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

/// What xclip finds on the clipboard; empty when there is nothing.
QByteArray clipboard(const QByteArray& type = "UTF8_STRING") {
    try {
        return pasteWithXclip(type);
    } catch (const std::exception&) {
        return {};
    }
}

TEST_F(Dictation, isPastedWhereTheFocusIs) {
    m_desk.startSayloft({RawAnswer::ok("  hello world\n")});
    m_desk.say();
    expectInEditor(QStringLiteral("hello world"));
    expectWholeSoundInLastRecording();
}

TEST_F(Dictation, withTheEnterChordPressesReturnAfterTheText) {
    m_desk.startSayloft({RawAnswer::ok("one"), RawAnswer::ok("two"), RawAnswer::ok("three")});
    for (int i = 1; i <= 3; ++i) {
        m_desk.say(DictationDesk::dictateEnter);
        ASSERT_TRUE(m_desk.waitForTranscripts(i));
    }
    expectInEditor(QStringLiteral("one\ntwo\nthree\n"));
}

TEST_F(Dictation, passesThroughTheReplacements) {
    m_desk.startSayloft({RawAnswer::ok("Dear colleague, new line NEW LINE see say loft")},
                        R"("replacements":[["new line","\n"],["say loft","Sayloft"]])");
    m_desk.say();
    expectInEditor(QStringLiteral("Dear colleague, \n \n see Sayloft"));
    EXPECT_EQ(m_desk.history(), R"(["Dear colleague, \n \n see Sayloft"])");
}

TEST_F(Dictation, isKeptInTheHistoryNewestFirst) {
    m_desk.startSayloft({RawAnswer::ok("first"), RawAnswer::ok("second")});
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    m_desk.say();
    EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["second","first"])"; }, 10s))
        << m_desk.history().toStdString();
}

TEST_F(Dictation, isLoggedWithItsLengthInCharacters) {
    // Eight characters: five letters, a space, a letter with its accent apart, a family.
    m_desk.startSayloft({RawAnswer::ok("voil\u00e0 e\u0301👩‍👩‍👧")});
    m_desk.say();
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral(
        "TRANSCRIPT len=8 trusted=true text='voil\u00e0 e\u0301👩‍👩‍👧'\n")))
        << m_desk.sayloft().log().toStdString();
}

TEST_F(Dictation, withoutAWordChangesNeitherClipboardNorHistory) {
    m_desk.startSayloft({RawAnswer::ok(" \n"), RawAnswer::ok("words")});
    XclipOwner copied({.data = "mine", .type = {}});
    m_desk.say();
    ASSERT_TRUE(
        m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIPT len=0 trusted=true text=''")));
    turnEventLoopFor(600ms);
    // A program that loses the clipboard for a moment ends here.
    EXPECT_TRUE(copied.program().isRunning());
    EXPECT_EQ(clipboard(), "mine");
    EXPECT_EQ(m_desk.history(), "");
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
}

TEST_F(Dictation, thatNobodyTranscribesFailsInTheLogAndTheNextOneWorks) {
    const RawAnswer busy = RawAnswer::status(503);
    m_desk.startSayloft({busy, busy, busy, busy, RawAnswer::ok("words")});
    const XclipOwner copied({.data = "mine", .type = {}});
    m_desk.say();
    ASSERT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
    EXPECT_EQ(m_desk.recordings().size(), 4U);
    EXPECT_EQ(clipboard(), "mine");
    EXPECT_EQ(m_desk.history(), "");
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
}

TEST_F(Dictation, withNobodyAtThePortOfTheServerFailsInTheLog) {
    m_desk.startSayloftWithoutServer();
    m_desk.say();
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED"), 5s));
    EXPECT_TRUE(m_desk.sayloft().program().isRunning());
    expectInEditor({});
}

// An attempt is given up after 30 s.
TEST_F(Dictation, thatTheServerForgetsIsAskedForAgainWhileOthersGoOn) {
    m_desk.startSayloft({RawAnswer::hang(), RawAnswer::ok("Second"), RawAnswer::ok("First")});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1, 5s));
    ASSERT_TRUE(m_desk.waitForTranscripts(2, 40s));
    expectInEditor(QStringLiteral("SecondFirst"));
}

TEST_F(Dictation, isPastedInTheOrderInWhichTheServerAnswers) {
    RawAnswer slow = RawAnswer::ok("Slow");
    slow.trickleMs = 25;
    m_desk.startSayloft({slow, RawAnswer::ok("Quick")});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(2));
    EXPECT_EQ(m_desk.transcripts(), (QStringList{QStringLiteral("Quick"), QStringLiteral("Slow")}));
    expectInEditor(QStringLiteral("QuickSlow"));
    EXPECT_EQ(m_desk.history(), R"(["Slow","Quick"])");
}

TEST_F(Dictation, arrivesWhileTheNextOneIsBeingSpoken) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.say();
    m_desk.hold();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    m_desk.room().play(m_desk.soundFile());
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(2));
    expectInEditor(QStringLiteral("FirstSecond"));
    expectWholeSoundInLastRecording();
}

TEST_F(Dictation, endsWhenAModifierIsAddedAndAnotherOneBeginsWhenItIsGone) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.hold();
    m_desk.room().play(m_desk.soundFile());
    m_desk.keyboard().press(TestKeyboard::altLeft);
    EXPECT_TRUE(m_desk.waitForTranscripts(1)) << "the chord is still held";
    expectWholeSoundInLastRecording();
    ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
    m_desk.keyboard().release(TestKeyboard::altLeft);
    EXPECT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 1; }));
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(2));
    expectInEditor(QStringLiteral("FirstSecond"));
}

struct Locks {
    const char* name;
    std::vector<TestKeyboard::Key> keys;
};

class DictationWith : public Dictation, public testing::WithParamInterface<Locks> {};

TEST_P(DictationWith, worksLikeAnyOther) {
    m_desk.startSayloft({RawAnswer::ok("Some words")});
    for (const TestKeyboard::Key key : GetParam().keys)
        m_desk.keyboard().tap(key);
    const std::uint8_t locked = m_desk.keyboard().lockedModifiers();
    ASSERT_NE(locked, 0);
    m_desk.say(DictationDesk::dictateEnter);
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
    EXPECT_EQ(m_desk.keyboard().lockedModifiers(), locked);
    expectInEditor(QStringLiteral("Some words\n"));
}

INSTANTIATE_TEST_SUITE_P(Keyboard, DictationWith,
                         testing::Values(Locks{"CapsLock", {TestKeyboard::capsLock}},
                                         Locks{"NumLock", {TestKeyboard::numLock}},
                                         Locks{"BothLocks",
                                               {TestKeyboard::capsLock, TestKeyboard::numLock}}),
                         [](const auto& row) { return row.param.name; });

TEST_F(Dictation, givesTheClipboardBackWithAllItsTypes) {
    QTemporaryDir files;
    writeFile(files.filePath(QStringLiteral("html")), "<b>mine</b>");
    writeFile(files.filePath(QStringLiteral("text")), "mine");
    m_desk.startSayloft({RawAnswer::ok("words")});
    const ChildProgram owner(QStringLiteral(QT_CLIPBOARD_OWNER),
                             {QStringLiteral("text/html"), files.filePath(QStringLiteral("html")),
                              QStringLiteral("text/plain"), files.filePath(QStringLiteral("text"))},
                             m_desk.display().environment());
    ASSERT_TRUE(waitUntil([] { return clipboard() == "mine"; }));
    m_desk.say();
    // Only then it has been taken.
    expectInEditor(QStringLiteral("words"));
    EXPECT_TRUE(waitUntil([] { return clipboard() == "mine"; }, 5s));
    EXPECT_EQ(clipboard("text/html"), "<b>mine</b>");
}

TEST_F(Dictation, staysOnTheClipboardWhenItIsToStayThere) {
    m_desk.startSayloft({RawAnswer::ok("words")}, R"("leaveInClipboard":true)");
    const XclipOwner copied({.data = "mine", .type = {}});
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    turnEventLoopFor(600ms);
    EXPECT_EQ(clipboard(), "words");
}

}  // namespace
}  // namespace sayloft::test
