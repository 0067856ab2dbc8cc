// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AudioInputPulse.h"
#include "tests/support/Waveform.h"

#include <chrono>
#include <memory>
#include <mutex>

namespace sayloft::bench {

/// Listens to the default microphone all the time and knows when each sample of it came. So for a
/// recording of the same microphone it can tell when its first sound was in the room, whoever has
/// recorded it and whenever it was delivered. 16 kHz, one channel. Main thread.
class RoomClock {
public:
    using Clock = std::chrono::steady_clock;

    /// Listens when the constructor returns; throws std::runtime_error when there is nothing to
    /// listen to.
    RoomClock();

    /// When the first sample came of a recording that was begun no more than five seconds ago.
    /// Throws std::runtime_error when it is none of this microphone.
    [[nodiscard]] Clock::time_point beginOf(const test::Samples& recording);

private:
    void hear(const AudioBuffer& buffer);

    AudioInputPulse m_input;
    std::mutex m_mutex;
    test::Samples m_heard;                    ///< guarded by m_mutex
    Clock::time_point m_begin{};              ///< when the first of them came; guarded by m_mutex
    std::unique_ptr<AudioCapture> m_capture;  ///< ends first
};

}  // namespace sayloft::bench
