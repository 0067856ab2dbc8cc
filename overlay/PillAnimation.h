// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <optional>

namespace sayloft {

/// What the pill shows beside the level.
enum class StatMode {
    timer,  ///< seconds of recording
    wpm,    ///< words per minute
};

/// a + (b − a) × t.
[[nodiscard]] double lerp(double a, double b, double t);

/// The state of the pill and the arithmetic of one tick, without a screen. There are 60 ticks a
/// second, and rates are per tick. One thread.
struct PillAnimation {
    using Clock = std::chrono::steady_clock;
    using TimePoint = Clock::time_point;

    double level = 0;                       ///< smoothed, 0 to 1
    std::function<double()> levelProvider;  ///< raw level, 0 to 1; asked only while recording
    double phase = 0;                       ///< of the ripple across the bars
    bool minimal = false;                   ///< bars only
    double appearRate = 0.3;
    double hideRate = 0.3;
    double holdDuration = 1.0;  ///< seconds that a result stays
    double presence = 0;        ///< 0, gone, to 1, fully shown
    double presenceTarget = 0;  ///< 0 or 1
    double wpmDisplay = 0;
    double wpmTarget = 0;
    int statsToken = 0;  ///< of the newest command; a hide scheduled before it is void
    StatMode mode = StatMode::timer;
    std::optional<TimePoint> recStart;  ///< while the recording time runs
    double frozenElapsed = 0;           ///< seconds, once it has stopped
    bool lastVisible = false;           ///< whether the previous tick drew the pill

    /// True when the view must be drawn again. The first tick of a hidden pill asks for it too, so
    /// that nothing of the pill stays on the screen.
    [[nodiscard]] bool tick();

    void setRecording(TimePoint now);
    void stopTimer(TimePoint now);
    void shrink();

    /// Both return the token to call `hide` with after `holdDuration`.
    [[nodiscard]] int holdThenHide();
    [[nodiscard]] int showStats(int wpm);

    /// Hides unless there has been a newer command than the one that gave the token.
    void hide(int token);

    /// Whether there is anything to see.
    [[nodiscard]] bool isVisible() const;
    /// Whether ticks change nothing that is or will be seen, until the next command.
    [[nodiscard]] bool isAtRest() const;
    /// Seconds of recording as the pill shows them.
    [[nodiscard]] double elapsed(TimePoint now) const;
};

}  // namespace sayloft
