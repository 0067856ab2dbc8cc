// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>

namespace sayloft {

/// Lets at most ten reports of progress a second through, whatever arrives, and never loses the
/// last one.
class ProgressThrottle {
public:
    using Clock = std::chrono::steady_clock;

    /// A bit more than a tenth of a second, so that even with the report of completion, which never
    /// waits, no second has more than ten.
    static constexpr std::chrono::milliseconds interval{112};

    /// The fraction where it is time to report, else nothing. 1 is always reported.
    [[nodiscard]] std::optional<double> pass(double fraction, Clock::time_point now);

    /// The newest fraction when it has been held back.
    [[nodiscard]] std::optional<double> heldBack();

private:
    std::optional<Clock::time_point> m_last;
    std::optional<double> m_heldBack;
};

}  // namespace sayloft
