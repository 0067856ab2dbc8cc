// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace sayloft {

/// Fires 60 times a second. Frames that a busy main thread has missed are left out, the others stay
/// in step. Main thread.
class FrameTimer {
public:
    explicit FrameTimer(std::function<void()> frame);

    /// Nothing where it runs already.
    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return m_timer.isActive(); }

private:
    using Clock = std::chrono::steady_clock;

    void fire();
    void waitForNextFrame();

    std::function<void()> m_frame;
    QTimer m_timer;
    Clock::time_point m_nextFrame;
};

}  // namespace sayloft
