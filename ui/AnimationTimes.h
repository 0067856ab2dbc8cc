// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace sayloft {

/// How the pill moves: two easing rates per frame and a time in seconds.
struct AnimationTimes {
    double appear = 0.3;
    double hide = 0.3;
    double hold = 1.0;

    bool operator==(const AnimationTimes&) const = default;
};

inline constexpr double slowestRate = 0.1;
inline constexpr double fastestRate = 0.55;
inline constexpr double longestHold = 4.0;  ///< seconds

/// The nearest multiple of ten, halves upward; for numbers from 0.
[[nodiscard]] int toTens(int milliseconds);

/// What is shown for a rate and for a hold: milliseconds in steps of ten.
[[nodiscard]] int shownMsOfRate(double rate);
[[nodiscard]] int shownMsOfHold(double seconds);

/// "250 ms"
[[nodiscard]] QString millisecondsText(int milliseconds);

/// The value that exactly belongs to what is shown, within the range that can be set.
[[nodiscard]] double snappedRate(double rate);
[[nodiscard]] double snappedHold(double seconds);

/// The value for a typed time, within the range that can be set, not snapped yet.
[[nodiscard]] double rateForMs(std::int64_t milliseconds);
[[nodiscard]] double holdForMs(std::int64_t milliseconds);

/// What a user may have meant: every digit counts and nothing else, so "1.5 s" is 15. 0 when that
/// is no number.
[[nodiscard]] std::int64_t typedMilliseconds(const QString& text);

/// The value that many steps of ten milliseconds further; a faster rate is a shorter time.
[[nodiscard]] double fasterRate(double rate, int steps);
[[nodiscard]] double longerHold(double seconds, int steps);

}  // namespace sayloft
