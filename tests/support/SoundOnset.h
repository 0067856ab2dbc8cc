// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

namespace sayloft::test {

/// Listens to the default microphone and knows when it hears something. What it says includes the
/// way through the microphone, some 20 ms. Main thread.
class SoundOnset {
public:
    using Clock = std::chrono::steady_clock;

    /// Listens when the constructor returns; throws std::runtime_error when there is nothing to
    /// listen to. `input` must outlive this.
    explicit SoundOnset(AudioInput& input);

    /// Waits until it has been silent for a while; whatever was heard before is forgotten.
    void waitForSilence();

    /// When the first sound came since then.
    [[nodiscard]] std::optional<Clock::time_point> onset() const;

private:
    void hear(const AudioBuffer& buffer);

    std::atomic<bool> m_isListening = false;
    std::atomic<Clock::rep> m_first = 0;  ///< 0 for none
    std::atomic<Clock::rep> m_last = 0;
    std::unique_ptr<AudioCapture> m_capture;  ///< ends first
};

}  // namespace sayloft::test
