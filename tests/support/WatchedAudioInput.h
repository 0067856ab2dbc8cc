// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AudioInputPulse.h"

#include <atomic>
#include <chrono>
#include <optional>

namespace sayloft::test {

/// The microphones of a sound server, with captures that tell when they deliver and when they have
/// ended. Main thread.
class WatchedAudioInput : public AudioInputPulse {
public:
    using Clock = std::chrono::steady_clock;

    /// Buffers of this many frames are delivered; none: as many as were asked for. The fewer, the
    /// closer `firstSample` is to the moment at which it arrived.
    std::optional<int> framesPerBuffer;

    /// When the first buffer of the newest capture was handed over; nothing before that.
    [[nodiscard]] std::optional<Clock::time_point> firstSample() const;
    /// How many frames captures have delivered, and how many of them have ended.
    [[nodiscard]] int frames() const { return m_frames; }
    [[nodiscard]] int ends() const { return m_ends; }

    [[nodiscard]] AudioCaptureResult startCapture(AudioCaptureRequest request) override;

private:
    std::atomic<Clock::rep> m_firstSample = 0;  ///< 0 for none
    std::atomic<int> m_frames = 0;
    std::atomic<int> m_ends = 0;
};

}  // namespace sayloft::test
