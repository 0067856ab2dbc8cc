// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <cstddef>

namespace sayloft {

/// One channel of an interleaved buffer, seen in place. Valid as long as the buffer is.
class ChannelView {
public:
    ChannelView(float* first, int frames, int stride)
        : m_first(first), m_frames(frames), m_stride(stride) {}
    /// Channel 0 of `buffer`, whose samples are not null.
    explicit ChannelView(const AudioBuffer& buffer)
        : ChannelView(buffer.samples, buffer.frames, buffer.format.channels) {}

    [[nodiscard]] int frames() const { return m_frames; }
    [[nodiscard]] float& operator[](int frame) const {
        return m_first[static_cast<std::ptrdiff_t>(frame) * m_stride];
    }

private:
    float* m_first;
    int m_frames;
    int m_stride;
};

}  // namespace sayloft
