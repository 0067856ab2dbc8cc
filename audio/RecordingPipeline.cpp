// SPDX-License-Identifier: MIT
#include "audio/RecordingPipeline.h"

#include <utility>

namespace sayloft {

RecordingPipeline::RecordingPipeline(std::unique_ptr<WavWriter> writer, AudioFormat inputFormat)
    : m_writer(std::move(writer)),
      m_resampler(MonoResampler::create(inputFormat, WavFile::sampleRate)) {}

void RecordingPipeline::handle(const AudioBuffer& buffer, Boost boost) {
    const std::lock_guard lock(m_mutex);
    if (m_isClosed)
        return;
    m_hasBuffer = true;
    if (buffer.samples != nullptr) {
        const ChannelView first(buffer);
        const Loudness loudness = LevelMeter::measure(first);
        m_level.store(LevelMeter::level(loudness.rms), std::memory_order_relaxed);
        if (boost == Boost::on)
            AutoGain::apply(first, m_gain.gainFor(loudness));
    }
    if (m_resampler)
        m_writer->write(m_resampler->convert(buffer));
}

void RecordingPipeline::end(const QString& error) {
    const std::lock_guard lock(m_mutex);
    closeLocked();
    m_error = error;
    m_ended = true;
    m_endedCondition.notify_all();
}

std::optional<QString> RecordingPipeline::error() const {
    if (!m_ended || m_error.isEmpty())
        return std::nullopt;
    return m_error;
}

std::optional<QString> RecordingPipeline::startError() const {
    return m_hasBuffer ? std::nullopt : error();
}

std::shared_ptr<MemoryFile> RecordingPipeline::waitUntilComplete(
    std::chrono::milliseconds deadline) {
    {
        std::unique_lock lock(m_mutex);
        m_endedCondition.wait_for(lock, deadline, [this] { return m_ended.load(); });
        closeLocked();
    }
    return m_writer->waitUntilClosed();
}

void RecordingPipeline::close() {
    const std::lock_guard lock(m_mutex);
    closeLocked();
}

void RecordingPipeline::closeLocked() {
    if (std::exchange(m_isClosed, true))
        return;
    if (m_resampler)
        m_writer->write(m_resampler->flush());
    m_resampler.reset();
    m_writer->close();
}

}  // namespace sayloft
