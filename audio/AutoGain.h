// SPDX-License-Identifier: MIT
#pragma once

#include "audio/ChannelView.h"
#include "audio/LevelMeter.h"

namespace sayloft {

/// Brings a quiet voice towards half of full scale, by at most a factor of six, and holds silence
/// down. Follows the input with a slowly decaying peak, so one object serves one recording. Not
/// shared between threads.
class AutoGain {
public:
    /// Takes the loudness of the next buffer into account; returns the gain for that buffer.
    [[nodiscard]] float gainFor(Loudness loudness);

    /// Multiplies in place and keeps the result within −1 to 1.
    static void apply(ChannelView channel, float gain);

    [[nodiscard]] float runningPeak() const { return m_runningPeak; }

private:
    float m_runningPeak = 0.05F;
};

}  // namespace sayloft
