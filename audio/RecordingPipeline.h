// SPDX-License-Identifier: MIT
#pragma once

#include "audio/AutoGain.h"
#include "audio/MonoResampler.h"
#include "audio/WavWriter.h"
#include "platform/AudioInput.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

namespace sayloft {

/// The road of one recording from captured buffers into its file: level, boost, conversion.
class RecordingPipeline {
public:
    enum class Boost { off, on };

    RecordingPipeline(std::unique_ptr<WavWriter> writer, AudioFormat inputFormat);

    /// Takes one buffer, which it changes in place. Audio thread.
    void handle(const AudioBuffer& buffer, Boost boost);
    /// The last buffer has been handled: the file is to be completed. Audio thread.
    void end(const QString& error);

    /// Level of the newest buffer, 0 to 1. Any thread, never blocking.
    [[nodiscard]] double level() const { return m_level.load(std::memory_order_relaxed); }
    /// Why the capture broke off; nothing as long as it has not. Neither this nor the next one ever
    /// waits for the audio thread.
    [[nodiscard]] std::optional<QString> error() const;
    /// The same, where it did so before its first buffer.
    [[nodiscard]] std::optional<QString> startError() const;
    [[nodiscard]] bool hasEnded() const { return m_ended.load(); }

    /// Waits for `end`, but no longer than `deadline`, and then until the disk has all that has
    /// come. Returns where the file is if it is not on the disk; it stays there as long as this
    /// object lives. Never called on the main thread.
    std::shared_ptr<MemoryFile> waitUntilComplete(std::chrono::milliseconds deadline);
    /// Has the file completed with what has come; whatever comes later is dropped. Any thread.
    void close();

private:
    void closeLocked();

    std::atomic<double> m_level = 0;
    std::atomic<bool> m_hasBuffer = false;
    std::atomic<bool> m_ended = false;

    std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_endedCondition;
    const std::unique_ptr<WavWriter> m_writer;
    std::optional<MonoResampler> m_resampler;
    bool m_isClosed = false;
    AutoGain m_gain;
    QString m_error;  ///< fixed once `m_ended` is set
};

}  // namespace sayloft
