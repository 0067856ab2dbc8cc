// SPDX-License-Identifier: MIT
#include "overlay/SettleTime.h"

#include <limits>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

struct RateAndTime {
    const char* name;
    double rate;
    int milliseconds;
};

class SettleMs : public testing::TestWithParam<RateAndTime> {};

TEST_P(SettleMs, isTheTimeOfTheRate) {
    EXPECT_EQ(settleMs(GetParam().rate), GetParam().milliseconds);
}

INSTANTIATE_TEST_SUITE_P(
    Table, SettleMs,
    testing::Values(RateAndTime{"theDefault", 0.3, 140}, RateAndTime{"half", 0.5, 72},
                    RateAndTime{"theFastest", 0.99, 11}, RateAndTime{"allAtOnce", 1.0, 11},
                    RateAndTime{"fasterThanAllAtOnce", 7.0, 11},
                    RateAndTime{"theSlowest", 0.01, 4968}, RateAndTime{"never", 0.0, 4968},
                    RateAndTime{"backwards", -1.0, 4968}, RateAndTime{"slow", 0.02, 2471}),
    [](const auto& row) { return row.param.name; });

struct TimeAndRate {
    const char* name;
    int milliseconds;
    double rate;
    double tolerance;
};

class RateForSettleMs : public testing::TestWithParam<TimeAndRate> {};

TEST_P(RateForSettleMs, isTheRateOfTheTime) {
    EXPECT_NEAR(rateForSettleMs(GetParam().milliseconds), GetParam().rate, GetParam().tolerance);
}

INSTANTIATE_TEST_SUITE_P(Table, RateForSettleMs,
                         testing::Values(TimeAndRate{"noTime", 0, 0.95, 1e-12},
                                         TimeAndRate{"lessThanATick", 16, 0.95, 1e-12},
                                         TimeAndRate{"beforeNow", -250, 0.95, 1e-12},
                                         TimeAndRate{"longBeforeNow",
                                                     std::numeric_limits<int>::min(), 0.95, 1e-12},
                                         TimeAndRate{"theDefault", 140, 0.29997, 5e-6},
                                         TimeAndRate{"aSecond", 1000, 0.0487, 5e-5},
                                         TimeAndRate{"theSlowest", 4968, 0.0099998, 5e-8}),
                         [](const auto& row) { return row.param.name; });

TEST(SettleTime, comesBackFromTheRateItGave) {
    for (int milliseconds = 50; milliseconds <= 4968; ++milliseconds)
        EXPECT_EQ(settleMs(rateForSettleMs(milliseconds)), milliseconds);
}

}  // namespace
}  // namespace sayloft
