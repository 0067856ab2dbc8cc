// SPDX-License-Identifier: MIT
#include "overlay/SettleTime.h"

#include <algorithm>
#include <cmath>

namespace sayloft {
namespace {

constexpr double lnOfFivePercent = -2.995732273553991;
constexpr double ticksPerSecond = 60.0;
constexpr double slowestRate = 0.01;
constexpr double fastestRate = 0.99;
constexpr int slowestMs = 4968;

}  // namespace

int settleMs(double rate) {
    if (rate <= slowestRate)
        return slowestMs;
    const double ticks = lnOfFivePercent / std::log(1.0 - std::min(rate, fastestRate));
    return static_cast<int>(std::lround(ticks / ticksPerSecond * 1000.0));
}

double rateForSettleMs(int milliseconds) {
    const double ticks = std::max(milliseconds / 1000.0 * ticksPerSecond, 1.0);
    return 1.0 - std::exp(lnOfFivePercent / ticks);
}

}  // namespace sayloft
