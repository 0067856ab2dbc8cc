// SPDX-License-Identifier: MIT
#include "overlay/FrameTimer.h"

#include <algorithm>
#include <ratio>
#include <utility>

namespace sayloft {
namespace {

using std::chrono::milliseconds;
using Frames = std::chrono::duration<std::chrono::steady_clock::rep, std::ratio<1, 60>>;

}  // namespace

// QTimer counts whole milliseconds and a frame has none of these, so each is timed by itself.
FrameTimer::FrameTimer(std::function<void()> frame) : m_frame(std::move(frame)) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.callOnTimeout([this] { fire(); });
}

void FrameTimer::start() {
    if (isRunning())
        return;
    m_nextFrame = Clock::now();
    waitForNextFrame();
}

void FrameTimer::stop() {
    m_timer.stop();
}

void FrameTimer::fire() {
    waitForNextFrame();
    m_frame();
}

void FrameTimer::waitForNextFrame() {
    const auto now = Clock::now();
    const auto missed = std::chrono::floor<Frames>(std::max(now - m_nextFrame, Clock::duration{}));
    m_nextFrame += std::chrono::duration_cast<Clock::duration>(missed + Frames(1));
    m_timer.start(std::chrono::ceil<milliseconds>(m_nextFrame - now));
}

}  // namespace sayloft
