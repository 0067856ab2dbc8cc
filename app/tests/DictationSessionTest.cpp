// SPDX-License-Identifier: MIT
#include "app/DictationSession.h"

#include "audio/Recorder.h"
#include "models/Paths.h"
#include "speech/Paster.h"
#include "speech/Transcriber.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::RawAnswer;
using test::RawHttpServer;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr Mods shiftCmd{Mods::shift, Mods::cmd};

/// What the controller is to a session.
class FakeHost : public DictationHost {
public:
    void setState(IconState state) override { m_item.setState(state); }
    void buildMenu() override { m_item.buildMenu(); }
    [[nodiscard]] Overlay* dictationOverlay() override { return &m_overlay; }
    [[nodiscard]] bool accessibilityTrusted() const override { return trusted; }
    [[nodiscard]] bool serverReady() const override { return ready; }

    test::Seen seen;
    bool trusted = true;
    bool ready = true;

private:
    test::FakeStatusItem m_item{seen};
    test::FakeOverlay m_overlay{seen};
};

/// A session on fake hardware and a real connection to a speech server that answers from a script.
class Session : public testing::Test {
protected:
    /// The server's answers, one for each request.
    void answer(std::vector<RawAnswer> script) {
        m_server = std::make_unique<RawHttpServer>(std::move(script));
        m_transcriber =
            Transcriber(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_server->port())),
                        {.attempts = 4, .pause = 20ms, .timeout = 10s});
    }

    void answerText(const QByteArray& text) { answer({RawAnswer::ok(text)}); }

    /// Holds the chord for `seconds` by the session's clock.
    void dictate(double seconds = 2, bool enter = false) {
        m_session.beginRecording(enter, shiftCmd);
        m_now += std::chrono::milliseconds(static_cast<int>(seconds * 1000));
        m_session.endRecording();
    }

    /// Waits for what the session does last of all.
    [[nodiscard]] bool waitFor(const char* word) {
        return test::waitUntil([&] { return count(word) > 0; });
    }

    [[nodiscard]] long count(const char* word) const {
        return std::count(m_host.seen.begin(), m_host.seen.end(), word);
    }

    test::TempHome m_home;
    test::FakePlatform m_fakes;
    Platform m_platform = m_fakes.platform();
    Config m_cfg;
    Recorder m_recorder{m_fakes.audio};
    Transcriber m_transcriber;
    Paster m_paster{m_fakes.clipboard, m_fakes.keyPoster};
    History m_history;
    FakeHost m_host;
    std::unique_ptr<RawHttpServer> m_server;
    DictationSession::Clock::time_point m_now;
    DictationSession m_session{{.cfg = m_cfg,
                                .recorder = m_recorder,
                                .transcriber = m_transcriber,
                                .paster = m_paster,
                                .history = m_history,
                                .sounds = m_fakes.sounds},
                               m_host,
                               [this] { return m_now; }};
};

TEST_F(Session, showsEveryStepInOrder) {
    answerText("six words in all with two");
    dictate(2);
    ASSERT_TRUE(waitFor("wpm 180"));
    EXPECT_THAT(m_host.seen, ElementsAre("recording", "pill on", "warming", "timer stopped",
                                         "ready", "menu", "wpm 180"));
}

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
    ASSERT_TRUE(test::waitUntil([&] { return m_fakes.keyPoster.keys.size() == 2; }));
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
    test::turnEventLoopFor(500ms);
    EXPECT_THAT(m_fakes.clipboard.restored, IsEmpty());
}

TEST_F(Session, givesTheClipboardBackOtherwise) {
    answerText("hello");
    dictate();
    EXPECT_TRUE(test::waitUntil([&] { return m_fakes.clipboard.restored.size() == 1; }));
}

TEST_F(Session, ofTwelveSecondsAndThirtyWordsShows150) {
    answerText(QByteArray("word ").repeated(30));
    dictate(12);
    EXPECT_TRUE(waitFor("wpm 150"));
}

struct FigureRow {
    const char* name;
    double seconds;
    const char* text;
    const char* pillStyle;
    const char* shown;
};

class SessionFigure : public Session, public testing::WithParamInterface<FigureRow> {};

TEST_P(SessionFigure, endsOnTheOverlay) {
    m_cfg.pillStyle = QString::fromLatin1(GetParam().pillStyle);
    answerText(GetParam().text);
    dictate(GetParam().seconds);
    ASSERT_TRUE(test::waitUntil([&] { return count("ready") == 1; }));
    EXPECT_EQ(m_host.seen.back(), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    Holds, SessionFigure,
    testing::Values(FigureRow{"halfASecondIsTooShort", 0.5, "one two", "full", "hold then hide"},
                    FigureRow{"aLittleMoreIsEnough", 0.501, "one two", "full", "wpm 240"},
                    FigureRow{"minimalStyleShowsNone", 2, "one two", "minimal", "hold then hide"},
                    FigureRow{"unknownStyleShowsNone", 2, "one two", "wide", "hold then hide"},
                    FigureRow{"lessThanHalfAWordAMinute", 200, "one", "full", "hold then hide"},
                    FigureRow{"halfAWordAMinuteRoundsUp", 120, "one", "full", "wpm 1"},
                    FigureRow{"noWords", 2, "", "full", "pill off"}),
    [](const auto& row) { return row.param.name; });

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

TEST_F(Session, endsTheErrorFlashAsTheServerIs) {
    QElapsedTimer elapsed;
    elapsed.start();
    m_session.flashError();
    ASSERT_TRUE(waitFor("ready"));
    EXPECT_GE(elapsed.elapsed(), 1750);
    EXPECT_LT(elapsed.elapsed(), 2600);

    m_host.ready = false;
    m_host.seen.clear();
    m_session.flashError();
    EXPECT_TRUE(waitFor("warming"));
    EXPECT_THAT(m_host.seen, ElementsAre("error", "warming"));
}

TEST_F(Session, withoutARecordingEndsSilently) {
    m_fakes.audio.startError = QStringLiteral("no sound server");
    answerText("never asked for");
    dictate();
    EXPECT_THAT(m_host.seen, ElementsAre("recording", "pill on", "warming", "timer stopped",
                                         "pill off", "ready"));
    test::turnEventLoopFor(200ms);
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
    ASSERT_TRUE(test::waitUntil([&] { return m_server->requests().size() == 1; }));
    dictate();
    ASSERT_TRUE(test::waitUntil([&] { return m_fakes.clipboard.texts.size() == 2; }));
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
        ASSERT_TRUE(test::waitUntil([&] { return m_server->requests().size() == 1; }));
        elapsed.start();
    }
    EXPECT_LT(elapsed.elapsed(), 500);
    test::turnEventLoopFor(50ms);
    EXPECT_THAT(m_host.seen, Not(Contains("error")));
}

}  // namespace
}  // namespace sayloft
