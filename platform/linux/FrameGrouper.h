// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <functional>
#include <vector>

namespace sayloft {

/// Regroups samples that come in pieces of any size into buffers of one size.
class FrameGrouper {
public:
    using Deliver = std::function<void(const AudioBuffer&)>;

    /// Format and deliver as the buffers shall have them; `framesPerBuffer` is at least 1.
    FrameGrouper(AudioFormat format, int framesPerBuffer, Deliver deliver);

    /// `samples` are interleaved; their number is a multiple of the channels. Null is silence.
    void add(const float* samples, std::size_t count);

    /// Delivers what is left as a last, shorter buffer; nothing when nothing is left.
    void flush();

private:
    AudioFormat m_format;
    Deliver m_deliver;
    std::size_t m_size;  ///< samples of a full buffer
    std::vector<float> m_samples;
};

}  // namespace sayloft
