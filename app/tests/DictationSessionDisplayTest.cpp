// SPDX-License-Identifier: MIT
// What a dictation shows: the icon, the overlay and the words per minute.
#include "app/DictationSession.h"

#include "app/tests/DictationSessionFixture.h"

#include <QElapsedTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using Session = DictationSessionFixture;
using testing::ElementsAre;

TEST_F(Session, showsEveryStepInOrder) {
    answerText("six words in all with two");
    dictate(2);
    ASSERT_TRUE(waitFor("wpm 180"));
    EXPECT_THAT(m_host.seen, ElementsAre("recording", "pill on", "warming", "timer stopped",
                                         "ready", "menu", "wpm 180"));
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
    ASSERT_TRUE(waitUntil([&] { return count("ready") == 1; }));
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

}  // namespace
}  // namespace sayloft::test
