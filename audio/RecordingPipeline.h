// SPDX-License-Identifier: MIT
#pragma once

#include "audio/AutoGain.h"
#include "audio/MonoResampler.h"
#include "audio/WavFile.h"
#include "platform/AudioInput.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>

namespace sayloft {

/// The road of one recording from captured buffers into its file: level, boost, conversion.
class RecordingPipeline {
public:
    enum class Boost { off, on };

    RecordingPipeline(WavFile file, AudioFormat inputFormat);

    /// Takes one buffer, which it changes in place. Audio thread.
    void handle(const AudioBuffer& buffer, Boost boost);
    /// The last buffer has been handled: completes the file. Audio thread.
    void end(const QString& error);

    /// Level of the newest buffer, 0 to 1. Any thread, never blocking.
    [[nodiscard]] double level() const { return m_level.load(std::memory_order_relaxed); }
    /// Why the capture ended without a single buffer; nothing otherwise. Never waits for the audio
    /// thread.
    [[nodiscard]] std::optional<QString> startError() const;
    [[nodiscard]] bool hasEnded() const { return m_ended.load(); }

    /// Waits for `end`; after `deadline` completes the file with what has come until then. Never
    /// called on the main thread.
    void waitUntilEnded(std::chrono::milliseconds deadline);
    /// Completes the file now; whatever comes later is dropped. Any thread.
    void close();

private:
    void closeLocked();
    void write(std::span<const float> samples);

    std::atomic<double> m_level = 0;
    std::atomic<bool> m_hasBuffer = false;
    std::atomic<bool> m_ended = false;

    std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_endedCondition;
    std::optional<WavFile> m_file;
    std::optional<MonoResampler> m_resampler;
    AutoGain m_gain;
    QString m_error;  ///< fixed once `m_ended` is set
};

}  // namespace sayloft
