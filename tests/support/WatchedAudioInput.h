// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <atomic>
#include <chrono>
#include <optional>

namespace sayloft::test {

/// Another audio input, whose captures tell when they deliver and when they have ended. Main
/// thread.
class WatchedAudioInput : public AudioInput {
public:
    using Clock = std::chrono::steady_clock;

    /// `input` outlives this object, which outlives its captures.
    explicit WatchedAudioInput(AudioInput& input) : m_input(input) {}

    /// Buffers of this many frames are delivered; none: as many as were asked for. The fewer, the
    /// closer `firstSample` is to the moment at which it arrived.
    std::optional<int> framesPerBuffer;

    /// When the first buffer of the newest capture was handed over; nothing before that.
    [[nodiscard]] std::optional<Clock::time_point> firstSample() const;
    /// How many frames captures have delivered, and how many of them have ended.
    [[nodiscard]] int frames() const { return m_frames; }
    [[nodiscard]] int ends() const { return m_ends; }

    [[nodiscard]] std::vector<AudioDeviceId> devices() const override;
    [[nodiscard]] bool hasInput(AudioDeviceId device) const override;
    [[nodiscard]] std::uint32_t transport(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> uid(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> name(AudioDeviceId device) const override;
    [[nodiscard]] AudioFormat inputFormat(std::optional<AudioDeviceId> device) const override;
    [[nodiscard]] AudioCaptureResult startCapture(AudioCaptureRequest request) override;
    [[nodiscard]] Authorization authorization() const override;
    void requestAccess(std::function<void(bool granted)> answered) override;

private:
    AudioInput& m_input;
    std::atomic<Clock::rep> m_firstSample = 0;  ///< 0 for none
    std::atomic<int> m_frames = 0;
    std::atomic<int> m_ends = 0;
};

}  // namespace sayloft::test
