// SPDX-License-Identifier: MIT
#pragma once

#include "audio/ChannelView.h"

namespace sayloft {

/// How loud a buffer is, in parts of full scale; 0 for an empty one.
struct Loudness {
    float rms = 0;
    float peak = 0;  ///< largest absolute sample
};

/// Turns samples into the reading of the level meter. Pure; any thread.
class LevelMeter {
public:
    [[nodiscard]] static Loudness measure(ChannelView channel);

    /// 0 at −50 dBFS and below, 1 at 0 dBFS and above, linear in decibels between.
    [[nodiscard]] static double level(float rms);
};

}  // namespace sayloft
