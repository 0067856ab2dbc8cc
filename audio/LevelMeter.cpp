// SPDX-License-Identifier: MIT
#include "audio/LevelMeter.h"

#include <algorithm>
#include <cmath>

namespace sayloft {

Loudness LevelMeter::measure(ChannelView channel) {
    if (channel.frames() == 0)
        return {};
    double squares = 0;
    float peak = 0;
    for (int frame = 0; frame < channel.frames(); ++frame) {
        const float sample = channel[frame];
        squares += static_cast<double>(sample) * static_cast<double>(sample);
        peak = std::max(peak, std::abs(sample));
    }
    return {.rms = static_cast<float>(std::sqrt(squares / channel.frames())), .peak = peak};
}

double LevelMeter::level(float rms) {
    constexpr double rangeInDecibels = 50;
    // In this order the floor also replaces a value that is not a number.
    const double decibels = 20 * std::log10(static_cast<double>(std::max(1e-7F, rms)));
    return std::clamp((decibels + rangeInDecibels) / rangeInDecibels, 0.0, 1.0);
}

}  // namespace sayloft
