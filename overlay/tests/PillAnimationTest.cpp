// SPDX-License-Identifier: MIT
#include "overlay/PillAnimation.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using TimePoint = PillAnimation::TimePoint;

constexpr TimePoint begin{1h};

class Pill : public testing::Test {
protected:
    /// True when the last of the ticks asked for a redraw.
    bool tick(int times = 1) {
        bool draws = false;
        for (int i = 0; i < times; ++i)
            draws = pill.tick();
        return draws;
    }

    void showFully() {
        pill.setRecording(begin);
        tick(100);
    }

    PillAnimation pill;
};

TEST_F(Pill, isHiddenAndAtRestAtFirst) {
    EXPECT_FALSE(pill.isVisible());
    EXPECT_FALSE(tick());
    EXPECT_TRUE(pill.isAtRest());
}

TEST_F(Pill, appearsByItsRateOfWhatIsLeft) {
    pill.setRecording(begin);
    for (const double presence : {0.3, 0.51, 0.657, 0.7599}) {
        EXPECT_TRUE(tick());
        EXPECT_NEAR(pill.presence, presence, 1e-12);
    }
}

TEST_F(Pill, hidesByAnotherRateThanItAppears) {
    pill.hideRate = 0.5;
    showFully();
    pill.presence = 1;
    pill.shrink();
    for (const double presence : {0.5, 0.25, 0.125}) {
        tick();
        EXPECT_NEAR(pill.presence, presence, 1e-12);
    }
}

TEST_F(Pill, isDrawnOnceMoreWhenItHasGone) {
    showFully();
    pill.shrink();
    while (pill.isVisible())
        EXPECT_TRUE(tick());
    EXPECT_FALSE(pill.lastVisible);
    EXPECT_FALSE(tick());
}

TEST_F(Pill, isDrawnFromTheFirstTickOfARecordingOn) {
    pill.appearRate = 0.001;
    pill.setRecording(begin);
    EXPECT_TRUE(tick());
    EXPECT_FALSE(pill.isVisible());
}

TEST_F(Pill, asksForTheLevelOnlyWhileItRecords) {
    int asked = 0;
    pill.levelProvider = [&asked] { return ++asked, 1.0; };
    tick(3);
    EXPECT_EQ(asked, 0);
    pill.setRecording(begin);
    tick(4);
    EXPECT_EQ(asked, 4);
    pill.stopTimer(begin + 1s);
    tick(5);
    EXPECT_EQ(asked, 4);
}

TEST_F(Pill, followsTheLevelByThirtyFivePercentATick) {
    pill.levelProvider = [] { return 1.0; };
    pill.setRecording(begin);
    for (const double level : {0.35, 0.5775, 0.725375}) {
        tick();
        EXPECT_NEAR(pill.level, level, 1e-12);
    }
    pill.stopTimer(begin + 1s);
    tick();
    EXPECT_NEAR(pill.level, 0.725375 * 0.65, 1e-12);
}

TEST_F(Pill, isSilentWithoutALevelProvider) {
    pill.level = 1;
    pill.setRecording(begin);
    tick();
    EXPECT_NEAR(pill.level, 0.65, 1e-12);
}

TEST_F(Pill, ripplesByHalfAStepATick) {
    tick(1000);
    EXPECT_DOUBLE_EQ(pill.phase, 500);
}

TEST_F(Pill, countsTheRecordingTime) {
    pill.setRecording(begin);
    EXPECT_DOUBLE_EQ(pill.elapsed(begin), 0);
    EXPECT_DOUBLE_EQ(pill.elapsed(begin + 12340ms), 12.34);
}

TEST_F(Pill, keepsTheTimeAtWhichTheRecordingStopped) {
    pill.setRecording(begin);
    pill.stopTimer(begin + 2500ms);
    EXPECT_DOUBLE_EQ(pill.elapsed(begin + 1h), 2.5);
}

TEST_F(Pill, keepsTheEarlierTimeWhenNothingRuns) {
    pill.setRecording(begin);
    pill.stopTimer(begin + 2s);
    pill.stopTimer(begin + 9s);
    EXPECT_DOUBLE_EQ(pill.elapsed(begin + 9s), 2);
}

TEST_F(Pill, keepsTheFrozenTimeWhenItShrinks) {
    pill.setRecording(begin);
    pill.stopTimer(begin + 2s);
    pill.setRecording(begin + 10s);
    pill.shrink();
    EXPECT_DOUBLE_EQ(pill.elapsed(begin + 20s), 2);
}

TEST_F(Pill, keepsTheFrozenTimeWhenItHoldsWithoutStopping) {
    pill.setRecording(begin);
    pill.stopTimer(begin + 2s);
    pill.setRecording(begin + 10s);
    pill.hide(pill.holdThenHide());
    EXPECT_FALSE(pill.recStart.has_value());
    EXPECT_DOUBLE_EQ(pill.elapsed(begin + 20s), 2);
}

TEST_F(Pill, countsUpToTheWordsPerMinute) {
    showFully();
    pill.wpmDisplay = 55;
    static_cast<void>(pill.showStats(137));
    EXPECT_EQ(pill.mode, StatMode::wpm);
    EXPECT_EQ(pill.wpmDisplay, 0);
    double left = 137;
    for (int i = 0; i < 10; ++i) {
        tick();
        left *= 0.72;
        EXPECT_NEAR(pill.wpmDisplay, 137 - left, 1e-9);
    }
}

TEST_F(Pill, forgetsTheFigureWhenARecordingBegins) {
    static_cast<void>(pill.showStats(137));
    tick(50);
    pill.setRecording(begin);
    EXPECT_EQ(pill.mode, StatMode::timer);
    EXPECT_EQ(pill.wpmDisplay, 0);
    EXPECT_EQ(pill.wpmTarget, 0);
}

TEST_F(Pill, hidesWithTheTokenOfTheLastCommand) {
    showFully();
    const int token = pill.holdThenHide();
    EXPECT_EQ(pill.presenceTarget, 1);
    pill.hide(token);
    EXPECT_EQ(pill.presenceTarget, 0);
}

TEST_F(Pill, doesNotHideANewRecordingWithAnOlderToken) {
    showFully();
    const int token = pill.showStats(120);
    pill.setRecording(begin + 5s);
    pill.hide(token);
    EXPECT_EQ(pill.presenceTarget, 1);
}

TEST_F(Pill, doesNotHideANewerHoldWithAnOlderToken) {
    showFully();
    const int older = pill.holdThenHide();
    const int newer = pill.showStats(90);
    pill.hide(older);
    EXPECT_EQ(pill.presenceTarget, 1);
    pill.hide(newer);
    EXPECT_EQ(pill.presenceTarget, 0);
}

TEST_F(Pill, doesNotRestWhileTheLevelFalls) {
    pill.hideRate = 1;
    pill.levelProvider = [] { return 1.0; };
    showFully();
    pill.shrink();
    tick(2);
    EXPECT_FALSE(pill.isVisible());
    EXPECT_FALSE(pill.isAtRest());
    tick(20);
    EXPECT_TRUE(pill.isAtRest());
}

TEST_F(Pill, neverRestsBetweenChordAndEnd) {
    pill.setRecording(begin);
    for (int i = 0; i < 200; ++i) {
        tick();
        EXPECT_FALSE(pill.isAtRest());
    }
    const int token = pill.showStats(60);
    tick(200);
    EXPECT_FALSE(pill.isAtRest());
    pill.hide(token);
    tick(200);
    EXPECT_TRUE(pill.isAtRest());
}

/// What the pill is after each of the steps of a session, at the tick that the step begins with.
TEST_F(Pill, goesThroughAWholeSessionTickByTick) {
    pill.levelProvider = [] { return 0.8; };
    double presence = 0;
    double level = 0;
    double wpm = 0;
    int ticks = 0;
    const auto expectTicks = [&](int count, double target, double raw, double wpmTarget) {
        for (int i = 0; i < count; ++i, ++ticks) {
            tick();
            presence += (target - presence) * 0.3;
            level += (raw - level) * 0.35;
            wpm += (wpmTarget - wpm) * 0.28;
            ASSERT_NEAR(pill.presence, presence, 1e-12) << "tick " << ticks;
            ASSERT_NEAR(pill.level, level, 1e-12) << "tick " << ticks;
            ASSERT_NEAR(pill.wpmDisplay, wpm, 1e-9) << "tick " << ticks;
            ASSERT_NEAR(pill.phase, (ticks + 1) * 0.5, 1e-9);
        }
    };
    expectTicks(5, 0, 0, 0);
    pill.setRecording(begin);
    expectTicks(120, 1, 0.8, 0);
    pill.stopTimer(begin + 2s);
    expectTicks(30, 1, 0, 0);
    const int token = pill.showStats(150);
    expectTicks(60, 1, 0, 150);
    pill.hide(token);
    expectTicks(60, 0, 0, 150);
    EXPECT_TRUE(pill.isAtRest());
}

TEST(Lerp, goesFromOneEndToTheOther) {
    EXPECT_DOUBLE_EQ(lerp(2, 6, 0), 2);
    EXPECT_DOUBLE_EQ(lerp(2, 6, 0.25), 3);
    EXPECT_DOUBLE_EQ(lerp(2, 6, 1), 6);
    EXPECT_DOUBLE_EQ(lerp(6, 2, 1.5), 0);
}

}  // namespace
}  // namespace sayloft
