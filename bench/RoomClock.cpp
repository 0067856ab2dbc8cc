// SPDX-License-Identifier: MIT
#include "bench/RoomClock.h"

#include "tests/support/CloseListening.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>

namespace sayloft::bench {
namespace {

constexpr int rate = 16000;
constexpr std::size_t searched = std::size_t{5} * rate;

RoomClock::Clock::duration durationOf(std::size_t samples) {
    return std::chrono::duration_cast<RoomClock::Clock::duration>(
        std::chrono::duration<double>(static_cast<double>(samples) / rate));
}

}  // namespace

RoomClock::RoomClock() {
    if (!test::waitUntil([this] { return m_input.inputFormat(std::nullopt).sampleRate == rate; }))
        throw std::runtime_error("there is no microphone of 16 kHz");
    m_capture = test::listenClosely(m_input, [this](const AudioBuffer& buffer) { hear(buffer); });
    const auto hears = [this] {
        const std::lock_guard lock(m_mutex);
        return m_heard.size() > searched;
    };
    if (!m_capture || !test::waitUntil(hears))
        throw std::runtime_error("the microphone hears nothing");
}

// Samples come in bunches, the last of one earlier than the first of the next could: the earliest
// arrival counts for all.
void RoomClock::hear(const AudioBuffer& buffer) {
    const auto now = Clock::now();
    const std::lock_guard lock(m_mutex);
    const auto begin = now - durationOf(m_heard.size());
    m_begin = m_heard.empty() ? begin : std::min(m_begin, begin);
    for (std::ptrdiff_t i = 0; i < buffer.frames; ++i)
        m_heard.push_back(static_cast<std::int16_t>(std::lround(buffer.samples[i] * 32767)));
}

RoomClock::Clock::time_point RoomClock::beginOf(const test::Samples& recording) {
    const std::lock_guard lock(m_mutex);
    const std::size_t from = m_heard.size() - searched;
    const test::Match match = test::find(recording, std::span(m_heard).subspan(from));
    if (match.heard < recording.size() || match.likeness < 0.9)
        throw std::runtime_error("the recording is not of this room");
    return m_begin + durationOf(from + static_cast<std::size_t>(match.offset));
}

}  // namespace sayloft::bench
