// SPDX-License-Identifier: MIT
#include "audio/MonoResampler.h"

#include <cmath>
#include <utility>

namespace sayloft {
namespace {

constexpr std::uint32_t headroom = 1024;

// A sample that is not a number would stay in the filter's memory and silence all that follows.
float finite(float sample) {
    return std::isfinite(sample) ? sample : 0.0F;
}

}  // namespace

std::optional<MonoResampler> MonoResampler::create(AudioFormat from, double toRate) {
    if (!(from.sampleRate > 0) || from.channels < 1)
        return std::nullopt;
    const soxr_io_spec_t floats = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    const soxr_runtime_spec_t oneThread = soxr_runtime_spec(1);
    soxr_error_t error = nullptr;
    const soxr_t resampler =
        soxr_create(from.sampleRate, toRate, 1, &error, &floats, &quality, &oneThread);
    if (error != nullptr || resampler == nullptr)
        return std::nullopt;
    return MonoResampler(resampler, from, toRate);
}

MonoResampler::MonoResampler(soxr_t resampler, AudioFormat from, double toRate)
    : m_resampler(resampler), m_from(from), m_toRate(toRate) {}

std::uint32_t MonoResampler::outputCapacity(double toRate, int frames, double fromRate) {
    return static_cast<std::uint32_t>(toRate * frames / fromRate + headroom);
}

std::span<const float> MonoResampler::convert(const AudioBuffer& buffer) {
    const bool sameFormat =
        buffer.format.channels == m_from.channels && buffer.format.sampleRate == m_from.sampleRate;
    if (!sameFormat || buffer.samples == nullptr || buffer.frames <= 0)
        return {};
    mixDown(buffer);
    const std::uint32_t capacity =
        outputCapacity(m_toRate, buffer.frames, buffer.format.sampleRate);
    if (m_output.size() < capacity)
        m_output.resize(capacity);
    return process(m_mono.data(), m_mono.size());
}

std::span<const float> MonoResampler::flush() {
    if (m_output.size() < headroom)
        m_output.resize(headroom);
    return process(nullptr, 0);
}

void MonoResampler::mixDown(const AudioBuffer& buffer) {
    m_mono.resize(static_cast<std::size_t>(buffer.frames));
    const float* frame = buffer.samples;
    const int channels = buffer.format.channels;
    for (float& mono : m_mono) {
        float sum = 0;
        for (int channel = 0; channel < channels; ++channel)
            sum += finite(frame[channel]);
        mono = sum / static_cast<float>(channels);
        frame += channels;
    }
}

std::span<const float> MonoResampler::process(const float* input, std::size_t frames) {
    std::size_t filled = 0;
    while (true) {
        std::size_t taken = 0;
        std::size_t made = 0;
        const soxr_error_t error =
            soxr_process(m_resampler.get(), input, frames, &taken, m_output.data() + filled,
                         m_output.size() - filled, &made);
        filled += made;
        // Input is left over only where the output had no room for it.
        if (error != nullptr || filled < m_output.size())
            break;
        if (input != nullptr)
            input += taken;
        frames -= taken;
        m_output.resize(m_output.size() + headroom);
    }
    return {m_output.data(), filled};
}

}  // namespace sayloft
