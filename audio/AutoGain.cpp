// SPDX-License-Identifier: MIT
#include "audio/AutoGain.h"

#include <algorithm>

namespace sayloft {
namespace {

constexpr float decayPerBuffer = 0.999F;
constexpr float smallestPeak = 0.01F;
constexpr float wantedPeak = 0.5F;
constexpr float smallestGain = 1.0F;
constexpr float largestGain = 6.0F;
constexpr float silenceRms = 0.004F;
constexpr float silenceFactor = 0.15F;

float targetGain(float runningPeak) {
    if (runningPeak <= smallestPeak)
        return largestGain;
    return std::clamp(wantedPeak / runningPeak, smallestGain, largestGain);
}

}  // namespace

float AutoGain::gainFor(Loudness loudness) {
    m_runningPeak = std::max(m_runningPeak * decayPerBuffer, loudness.peak);
    const float target = targetGain(m_runningPeak);
    return loudness.rms < silenceRms ? target * silenceFactor : target;
}

void AutoGain::apply(ChannelView channel, float gain) {
    for (int frame = 0; frame < channel.frames(); ++frame)
        channel[frame] = std::clamp(channel[frame] * gain, -1.0F, 1.0F);
}

}  // namespace sayloft
