// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <mutex>
#include <vector>

namespace sayloft::test {

/// Keeps what a capture delivers. Must outlive the capture.
class CapturedSound {
public:
    using Clock = std::chrono::steady_clock;

    /// A request whose buffers and end arrive here.
    [[nodiscard]] AudioCaptureRequest request(std::optional<AudioDeviceId> device = std::nullopt,
                                              int framesPerBuffer = 4096);

    [[nodiscard]] std::vector<float> samples() const;
    [[nodiscard]] std::size_t frames() const;
    [[nodiscard]] std::vector<int> bufferSizes() const;
    [[nodiscard]] float peak() const;
    [[nodiscard]] int ends() const { return m_ends; }
    /// Nothing has been delivered after the end.
    [[nodiscard]] bool isInOrder() const { return !m_lateBuffer; }
    [[nodiscard]] bool waitForFrames(std::size_t count) const;
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds deadline) const;
    [[nodiscard]] Clock::time_point firstBuffer() const;
    void clear();

private:
    void add(const AudioBuffer& buffer);

    mutable std::mutex m_mutex;
    std::vector<float> m_samples;
    std::vector<int> m_sizes;
    Clock::time_point m_firstBuffer;
    std::atomic<int> m_ends = 0;
    std::atomic<bool> m_lateBuffer = false;
};

/// Writes a mono WAV file with 16-bit samples.
void writeWav(const QString& path, const std::vector<std::int16_t>& samples, int sampleRate);
[[nodiscard]] std::vector<float> readWav(const QString& path);

/// How far `spoken`, found wherever in `heard` its loudest part fits best, stands out of what
/// differs; in dB.
[[nodiscard]] double signalToNoise(const std::vector<float>& spoken,
                                   const std::vector<float>& heard);

}  // namespace sayloft::test
