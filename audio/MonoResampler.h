// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <soxr.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace sayloft {

/// Turns a stream of buffers into one channel (the average of all) at another rate. It keeps its
/// state between buffers, so that buffers join without a seam. Not shared between threads.
class MonoResampler {
public:
    /// Nothing when such a conversion cannot be made.
    [[nodiscard]] static std::optional<MonoResampler> create(AudioFormat from, double toRate);

    /// What has become complete with this buffer; valid until the next call. A buffer in another
    /// format than the stream's, or without samples, gives nothing.
    [[nodiscard]] std::span<const float> convert(const AudioBuffer& buffer);

    /// What is still inside at the end of the stream; nothing can be converted after it.
    [[nodiscard]] std::span<const float> flush();

    /// Room for the conversion of `frames` frames at `fromRate`: what they become, and 1024 more.
    [[nodiscard]] static std::uint32_t outputCapacity(double toRate, int frames, double fromRate);

private:
    struct Delete {
        void operator()(soxr* resampler) const { soxr_delete(resampler); }
    };
    MonoResampler(soxr_t resampler, AudioFormat from, double toRate);

    void mixDown(const AudioBuffer& buffer);
    /// Null `input` ends the stream.
    std::span<const float> process(const float* input, std::size_t frames);

    std::unique_ptr<soxr, Delete> m_resampler;
    AudioFormat m_from;
    double m_toRate;
    std::vector<float> m_mono;
    std::vector<float> m_output;
};

}  // namespace sayloft
