// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

/// What the rest of the program asks of the pill on the screen. Main thread; every call takes
/// effect in the order of the calls.
class Overlay {
public:
    virtual ~Overlay() = default;

    /// Shows the pill for a new recording, or hides it at once.
    virtual void setActive(bool active) = 0;

    /// Freezes the recording time.
    virtual void stopTimer() = 0;

    /// Shows words per minute, then hides after the configured hold.
    virtual void showStats(int wpm) = 0;

    /// Hides after the configured hold, without a figure.
    virtual void holdThenHide() = 0;

    /// `appear` and `hide` are easing rates per frame, `hold` is in seconds.
    virtual void configure(bool minimal, double appear, double hide, double hold) = 0;
};

}  // namespace sayloft
