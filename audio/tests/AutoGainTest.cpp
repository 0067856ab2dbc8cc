// SPDX-License-Identifier: MIT
#include "audio/AutoGain.h"

#include <gtest/gtest.h>

#include <vector>

namespace sayloft {
namespace {

constexpr float voice = 0.1F;  // an rms well above the noise gate

TEST(AutoGainFromTheStart, followsADecayingPeakOfOneTwentieth) {
    AutoGain gain;
    EXPECT_FLOAT_EQ(gain.runningPeak(), 0.05F);
    EXPECT_FLOAT_EQ(gain.gainFor({.rms = voice, .peak = 0.0F}), 6.0F);
    EXPECT_FLOAT_EQ(gain.runningPeak(), 0.05F * 0.999F);
}

TEST(AutoGain, neverAttenuatesAndLetsALoudPeakDecayPerBuffer) {
    AutoGain gain;
    EXPECT_EQ(gain.gainFor({.rms = voice, .peak = 1.0F}), 1.0F);
    EXPECT_EQ(gain.runningPeak(), 1.0F);
    EXPECT_EQ(gain.gainFor({.rms = voice, .peak = 0.2F}), 1.0F);
    EXPECT_EQ(gain.runningPeak(), 0.999F);
    EXPECT_EQ(gain.gainFor({.rms = voice, .peak = 0.2F}), 1.0F);
    EXPECT_EQ(gain.runningPeak(), 0.999F * 0.999F);
}

struct GainRow {
    const char* description;
    float rms;
    float peak;
    float gain;
};

class GainFor : public testing::TestWithParam<GainRow> {};

TEST_P(GainFor, isAsRequired) {
    AutoGain gain;
    EXPECT_FLOAT_EQ(gain.gainFor({.rms = GetParam().rms, .peak = GetParam().peak}),
                    GetParam().gain);
}

INSTANTIATE_TEST_SUITE_P(AutoGain, GainFor,
                         testing::Values(GainRow{"aVoiceAtAQuarter", voice, 0.25F, 2.0F},
                                         GainRow{"aVoiceAtHalf", voice, 0.5F, 1.0F},
                                         GainRow{"aVoiceAtATenth", voice, 0.1F, 5.0F},
                                         GainRow{"aQuietVoice", voice, 0.06F, 6.0F},
                                         GainRow{"silence", 0.0F, 0.0F, 6.0F * 0.15F},
                                         GainRow{"noiseJustBelowTheGate", 0.0039F, 0.25F,
                                                 2.0F * 0.15F},
                                         GainRow{"aVoiceAtTheGate", 0.004F, 0.25F, 2.0F},
                                         GainRow{"aClickInSilence", 0.001F, 1.0F, 0.15F}),
                         [](const auto& row) { return row.param.description; });

TEST(AutoGain, neverAmplifiesSilence) {
    AutoGain gain;
    for (int buffer = 0; buffer < 10000; ++buffer)
        ASSERT_LT(gain.gainFor({.rms = 0.0039F, .peak = 0.005F}), 1.0F) << buffer;
}

TEST(AutoGain, amplifiesSixfoldOnceThePeakHasDecayedToAHundredth) {
    AutoGain gain;
    for (int buffer = 0; buffer < 3000; ++buffer)
        static_cast<void>(gain.gainFor({.rms = 0.005F, .peak = 0.008F}));
    EXPECT_LE(gain.runningPeak(), 0.01F);
    EXPECT_EQ(gain.gainFor({.rms = 0.005F, .peak = 0.008F}), 6.0F);
}

TEST(AutoGain, changesTheFirstChannelAloneAndClampsIt) {
    std::vector<float> stereo = {0.1F, 0.1F, -0.4F, -0.4F, 0.4F, 0.4F};
    AutoGain::apply({stereo.data(), 3, 2}, 4.0F);
    EXPECT_EQ(stereo, (std::vector<float>{0.4F, 0.1F, -1.0F, -0.4F, 1.0F, 0.4F}));
}

}  // namespace
}  // namespace sayloft
