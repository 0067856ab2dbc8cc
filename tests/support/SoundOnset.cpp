// SPDX-License-Identifier: MIT
#include "tests/support/SoundOnset.h"

#include "tests/support/CloseListening.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

constexpr float loud = 0.05F;
constexpr auto silence = 300ms;

}  // namespace

SoundOnset::SoundOnset(AudioInput& input) {
    if (!waitUntil([&input] { return input.inputFormat(std::nullopt).sampleRate > 0; }))
        throw std::runtime_error("there is no microphone");
    m_capture = listenClosely(input, [this](const AudioBuffer& buffer) { hear(buffer); });
    if (!m_capture || !waitUntil([this] { return m_isListening.load(); }))
        throw std::runtime_error("the microphone hears nothing");
}

void SoundOnset::hear(const AudioBuffer& buffer) {
    m_isListening = true;
    const float* begin = buffer.samples;
    const float* end = begin + std::ptrdiff_t{buffer.frames} * buffer.format.channels;
    if (std::none_of(begin, end, [](float sample) { return std::abs(sample) > loud; }))
        return;
    const Clock::rep now = Clock::now().time_since_epoch().count();
    Clock::rep none = 0;
    m_first.compare_exchange_strong(none, now);
    m_last = now;
}

void SoundOnset::waitForSilence() {
    const auto isSilent = [this] {
        return Clock::now() - Clock::time_point(Clock::duration(m_last)) > silence;
    };
    if (!waitUntil(isSilent))
        throw std::runtime_error("the sound does not end");
    m_first = 0;
}

std::optional<SoundOnset::Clock::time_point> SoundOnset::onset() const {
    const Clock::rep first = m_first;
    return first == 0 ? std::nullopt : std::optional(Clock::time_point(Clock::duration(first)));
}

}  // namespace sayloft::test
