// SPDX-License-Identifier: MIT
#include "platform/linux/FrameGrouper.h"

#include <algorithm>
#include <utility>

namespace sayloft {

FrameGrouper::FrameGrouper(AudioFormat format, int framesPerBuffer, Deliver deliver)
    : m_format(format),
      m_deliver(std::move(deliver)),
      m_size(static_cast<std::size_t>(framesPerBuffer) *
             static_cast<std::size_t>(format.channels)) {
    m_samples.reserve(m_size);
}

void FrameGrouper::add(const float* samples, std::size_t count) {
    while (count > 0) {
        const std::size_t taken = std::min(count, m_size - m_samples.size());
        if (samples == nullptr) {
            m_samples.resize(m_samples.size() + taken);
        } else {
            m_samples.insert(m_samples.end(), samples, samples + taken);
            samples += taken;
        }
        count -= taken;
        if (m_samples.size() == m_size)
            flush();
    }
}

void FrameGrouper::flush() {
    if (m_samples.empty())
        return;
    const auto frames =
        static_cast<int>(m_samples.size() / static_cast<std::size_t>(m_format.channels));
    m_deliver({.samples = m_samples.data(), .frames = frames, .format = m_format});
    m_samples.clear();
}

}  // namespace sayloft
