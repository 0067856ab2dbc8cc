// SPDX-License-Identifier: MIT
#include "models/ProgressThrottle.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class Throttle : public testing::Test {
protected:
    [[nodiscard]] std::optional<double> passAt(std::chrono::milliseconds time, double fraction) {
        return m_throttle.pass(fraction, ProgressThrottle::Clock::time_point(time));
    }

    ProgressThrottle m_throttle;
};

TEST_F(Throttle, letsTheFirstReportThrough) {
    EXPECT_EQ(passAt(0ms, 0.25), 0.25);
}

TEST_F(Throttle, holdsBackWhatComesTooSoonAndKeepsTheNewest) {
    static_cast<void>(passAt(0ms, 0.1));
    EXPECT_EQ(passAt(10ms, 0.2), std::nullopt);
    EXPECT_EQ(passAt(20ms, 0.3), std::nullopt);
    EXPECT_EQ(m_throttle.heldBack(), 0.3);
    EXPECT_EQ(m_throttle.heldBack(), std::nullopt);
}

TEST_F(Throttle, forgetsWhatALaterReportHasOvertaken) {
    static_cast<void>(passAt(0ms, 0.1));
    static_cast<void>(passAt(10ms, 0.2));
    EXPECT_EQ(passAt(200ms, 0.4), 0.4);
    EXPECT_EQ(m_throttle.heldBack(), std::nullopt);
}

TEST_F(Throttle, neverHoldsBackTheEnd) {
    static_cast<void>(passAt(0ms, 0.9));
    EXPECT_EQ(passAt(1ms, 1.0), 1.0);
}

TEST_F(Throttle, letsNoMoreThanTenThroughInAnySecondTheEndIncluded) {
    std::vector<std::chrono::milliseconds> reports;
    for (auto time = 0ms; time <= 10s; time += 1ms) {
        if (passAt(time, time == 10s ? 1.0 : 0.5))
            reports.push_back(time);
    }
    ASSERT_GT(reports.size(), 80U);
    for (std::size_t i = 10; i < reports.size(); ++i)
        EXPECT_GE(reports[i] - reports[i - 10], 1s);
}

}  // namespace
}  // namespace sayloft
