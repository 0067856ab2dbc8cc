// SPDX-License-Identifier: MIT
#include "app/DictationSession.h"

#include "app/tests/DictationSessionFixture.h"
#include "audio/FailedRecording.h"

#include "tests/support/Waveform.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QThread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Session = DictationSessionFixture;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST_F(Session, pastesLogsAndRemembersTheTranscript) {
    answerText(" hello world\n");
    dictate();
    ASSERT_TRUE(waitFor("menu"));
    EXPECT_THAT(m_fakes.clipboard.texts, ElementsAre(QStringLiteral("hello world")));
    EXPECT_THAT(m_fakes.keyPoster.keys, ElementsAre(std::pair(VirtualKey::v, KeyFlag::command)));
    EXPECT_THAT(m_history.items(), ElementsAre(QStringLiteral("hello world")));
    EXPECT_TRUE(m_home.log().endsWith(
        QStringLiteral("TRANSCRIPT len=11 trusted=true text='hello world'\n")));
}

TEST_F(Session, saysInTheLogWhenItIsNotTrusted) {
    m_host.trusted = false;
    answerText("é 👨‍👩‍👧");
    dictate();
    ASSERT_TRUE(waitFor("menu"));
    EXPECT_TRUE(m_home.log().endsWith(
        QStringLiteral("TRANSCRIPT len=3 trusted=false text='é 👨‍👩‍👧'\n")));
}

TEST_F(Session, pressesReturnForAnEnterChord) {
    answerText("hello");
    dictate(2, true);
    ASSERT_TRUE(waitUntil([&] { return m_fakes.keyPoster.keys.size() == 2; }));
    EXPECT_EQ(m_fakes.keyPoster.keys.back(), std::pair(VirtualKey::returnKey, std::uint64_t{0}));
}

TEST_F(Session, appliesTheDictionaryBeforeAnythingElseSeesTheText) {
    m_cfg.replacements = {{QStringLiteral("say loft"), QStringLiteral("Sayloft")}};
    answerText("say loft works");
    dictate();
    ASSERT_TRUE(waitFor("menu"));
    EXPECT_THAT(m_fakes.clipboard.texts, ElementsAre(QStringLiteral("Sayloft works")));
    EXPECT_THAT(m_history.items(), ElementsAre(QStringLiteral("Sayloft works")));
    EXPECT_TRUE(m_home.log().contains(QStringLiteral("len=13")));
}

TEST_F(Session, leavesTheTranscriptOnTheClipboardWhenAskedTo) {
    m_cfg.leaveInClipboard = true;
    answerText("hello");
    dictate();
    ASSERT_TRUE(waitFor("menu"));
    turnEventLoopFor(500ms);
    EXPECT_THAT(m_fakes.clipboard.restored, IsEmpty());
}

TEST_F(Session, givesTheClipboardBackOtherwise) {
    answerText("hello");
    dictate();
    EXPECT_TRUE(waitUntil([&] { return m_fakes.clipboard.restored.size() == 1; }));
}

TEST_F(Session, withAnEmptyTranscriptTouchesNothing) {
    m_cfg.playSounds = true;
    answerText(" \n");
    dictate();
    ASSERT_TRUE(waitFor("pill off"));
    EXPECT_THAT(m_host.seen, ElementsAre("recording", "pill on", "warming", "timer stopped",
                                         "ready", "pill off"));
    EXPECT_THAT(m_fakes.clipboard.texts, IsEmpty());
    EXPECT_THAT(m_fakes.keyPoster.keys, IsEmpty());
    EXPECT_THAT(m_history.items(), IsEmpty());
    EXPECT_THAT(m_fakes.sounds.played, ElementsAre(QStringLiteral("Pop")));
}

TEST_F(Session, withoutAnAnswerFlashesTheErrorAndPastesNothing) {
    answer({RawAnswer::status(503)});
    dictate();
    ASSERT_TRUE(waitFor("error"));
    EXPECT_EQ(m_server->requests().size(), 4U);
    EXPECT_TRUE(m_home.log().endsWith(QStringLiteral("TRANSCRIBE FAILED\n")));
    EXPECT_EQ(m_host.seen.back(), "pill off");
    EXPECT_THAT(m_fakes.clipboard.texts, IsEmpty());
    EXPECT_THAT(m_history.items(), IsEmpty());
}

TEST_F(Session, withoutARecordingEndsSilently) {
    m_fakes.audio.startError = QStringLiteral("no sound server");
    answerText("never asked for");
    dictate();
    EXPECT_THAT(m_host.seen, ElementsAre("recording", "pill on", "warming", "timer stopped",
                                         "pill off", "ready"));
    turnEventLoopFor(200ms);
    EXPECT_THAT(m_server->requests(), IsEmpty());
}

TEST_F(Session, playsItsSoundsWhenTheyAreOn) {
    m_cfg.playSounds = true;
    answerText("hello");
    m_session.beginRecording(false, shiftCmd);
    EXPECT_THAT(m_fakes.sounds.played, ElementsAre(QStringLiteral("Pop")));
    m_session.endRecording();
    ASSERT_TRUE(waitFor("menu"));
    EXPECT_THAT(m_fakes.sounds.played, ElementsAre(QStringLiteral("Pop"), QStringLiteral("Tink")));
}

TEST_F(Session, playsNoSoundWhenTheyAreOff) {
    answerText("hello");
    dictate();
    ASSERT_TRUE(waitFor("menu"));
    EXPECT_THAT(m_fakes.sounds.played, IsEmpty());
}

TEST_F(Session, beginsOnlyOnceAndEndsOnlyOnce) {
    answerText("hello");
    m_session.beginRecording(false, shiftCmd);
    m_session.beginRecording(true, Mods::fn);
    EXPECT_EQ(m_session.running().activeChord, shiftCmd);
    EXPECT_EQ(m_fakes.audio.captures.size(), 1U);
    m_session.endRecording();
    m_session.endRecording();
    ASSERT_TRUE(waitFor("menu"));
    EXPECT_EQ(count("warming"), 1);
    EXPECT_EQ(m_server->requests().size(), 1U);
}

TEST_F(Session, beginsWhileTheServerIsStillWarming) {
    m_host.ready = false;
    m_session.beginRecording(false, shiftCmd);
    EXPECT_TRUE(m_fakes.audio.isCapturing());
}

TEST_F(Session, pastesInTheOrderInWhichTheServerAnswers) {
    RawAnswer slow = RawAnswer::ok("spoken first");
    slow.trickleMs = 10;
    answer({slow, RawAnswer::ok("spoken second")});
    dictate();
    ASSERT_TRUE(waitUntil([&] { return m_server->requests().size() == 1; }));
    dictate();
    ASSERT_TRUE(waitUntil([&] { return m_fakes.clipboard.texts.size() == 2; }));
    EXPECT_THAT(m_fakes.clipboard.texts,
                ElementsAre(QStringLiteral("spoken second"), QStringLiteral("spoken first")));
}

TEST_F(Session, canBeDestroyedWhileTheServerHangs) {
    answer({RawAnswer::hang()});
    QElapsedTimer elapsed;
    {
        DictationSession session({.cfg = m_cfg,
                                  .recorder = m_recorder,
                                  .transcriber = m_transcriber,
                                  .paster = m_paster,
                                  .history = m_history,
                                  .sounds = m_fakes.sounds},
                                 m_host);
        session.beginRecording(false, shiftCmd);
        session.endRecording();
        ASSERT_TRUE(waitUntil([&] { return m_server->requests().size() == 1; }));
        elapsed.start();
    }
    EXPECT_LT(elapsed.elapsed(), 500);
    turnEventLoopFor(50ms);
    EXPECT_THAT(m_host.seen, Not(Contains("error")));
}

/// The answer has come, but without the event loop nobody hears of it.
class SessionGivenUp : public Session {
protected:
    void giveUpAfterTheAnswer() {
        const auto threads = m_session.findChildren<QThread*>();
        ASSERT_EQ(threads.size(), 1);
        ASSERT_TRUE(threads.front()->wait(QDeadlineTimer(10s)));
        m_session.giveUp();
    }
};

TEST_F(SessionGivenUp, keepsTheSoundOfWhatIsBeingSaid) {
    answerText("never asked for");
    m_session.beginRecording(false, shiftCmd);
    m_fakes.audio.captures.back()->deliver(std::vector<float>(4800, 0.5F));
    m_session.giveUp();
    EXPECT_EQ(readSound(FailedRecording::file()).size(), 1600U);
    EXPECT_FALSE(m_session.running().isRecording);
    turnEventLoopFor(50ms);
    EXPECT_THAT(m_server->requests(), IsEmpty());
}

TEST_F(SessionGivenUp, keepsATranscriptThatHasCome) {
    answerText("just in time");
    dictate();
    giveUpAfterTheAnswer();
    EXPECT_THAT(m_history.items(), ElementsAre(QStringLiteral("just in time")));
    EXPECT_TRUE(m_home.log().contains(QStringLiteral("text='just in time'")));
    turnEventLoopFor(50ms);
    EXPECT_EQ(m_history.items().size(), 1U);
    EXPECT_TRUE(m_fakes.clipboard.texts.empty());
}

TEST_F(SessionGivenUp, forgetsAFailedDictationWhenATranscriptHasCome) {
    writeFile(FailedRecording::file(), "of an earlier dictation");
    answerText("just in time");
    dictate();
    giveUpAfterTheAnswer();
    EXPECT_FALSE(FailedRecording::isKept());
}

TEST_F(SessionGivenUp, keepsAFailedDictationWhenNothingWasRecognised) {
    writeFile(FailedRecording::file(), "of an earlier dictation");
    answerText("");
    dictate();
    giveUpAfterTheAnswer();
    EXPECT_TRUE(FailedRecording::isKept());
}

}  // namespace
}  // namespace sayloft::test
