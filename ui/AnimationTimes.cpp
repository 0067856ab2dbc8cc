// SPDX-License-Identifier: MIT
#include "ui/AnimationTimes.h"

#include "overlay/SettleTime.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace sayloft {
namespace {

constexpr int step = 10;

/// Longer times than this are all the slowest there is.
int clampedToInt(std::int64_t milliseconds) {
    return static_cast<int>(
        std::clamp<std::int64_t>(milliseconds, 0, std::numeric_limits<int>::max()));
}

bool isNumber(char32_t character) {
    switch (QChar::category(character)) {
        case QChar::Number_DecimalDigit:
        case QChar::Number_Letter:
        case QChar::Number_Other:
            return true;
        default:
            return false;
    }
}

}  // namespace

int toTens(int milliseconds) {
    return (milliseconds + 5) / 10 * 10;
}

int shownMsOfRate(double rate) {
    return toTens(settleMs(rate));
}

int shownMsOfHold(double seconds) {
    return toTens(static_cast<int>(std::lround(seconds * 1000)));
}

QString millisecondsText(int milliseconds) {
    return QString::number(milliseconds) + QStringLiteral(" ms");
}

double snappedRate(double rate) {
    return rateForMs(shownMsOfRate(rate));
}

double snappedHold(double seconds) {
    return holdForMs(shownMsOfHold(seconds));
}

double rateForMs(std::int64_t milliseconds) {
    return std::clamp(rateForSettleMs(clampedToInt(milliseconds)), slowestRate, fastestRate);
}

double holdForMs(std::int64_t milliseconds) {
    return std::clamp(static_cast<double>(milliseconds) / 1000, 0.0, longestHold);
}

std::int64_t typedMilliseconds(const QString& text) {
    std::int64_t value = 0;
    for (const char32_t character : text.toUcs4()) {
        if (!isNumber(character))
            continue;
        if (character < U'0' || character > U'9')
            return 0;
        const auto digit = static_cast<std::int64_t>(character - U'0');
        if (value > (std::numeric_limits<std::int64_t>::max() - digit) / 10)
            return 0;
        value = value * 10 + digit;
    }
    return value;
}

double fasterRate(double rate, int steps) {
    return rateForMs(shownMsOfRate(rate) - steps * step);
}

double longerHold(double seconds, int steps) {
    return holdForMs(shownMsOfHold(seconds) + steps * step);
}

}  // namespace sayloft
