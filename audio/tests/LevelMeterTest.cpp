// SPDX-License-Identifier: MIT
#include "audio/LevelMeter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace sayloft {
namespace {

Loudness measure(std::vector<float> samples, int channels = 1) {
    const int frames = static_cast<int>(samples.size()) / channels;
    return LevelMeter::measure({samples.data(), frames, channels});
}

struct LevelRow {
    const char* description;
    float rms;
    double level;
};

class LevelOf : public testing::TestWithParam<LevelRow> {};

TEST_P(LevelOf, isLinearInDecibels) {
    EXPECT_NEAR(LevelMeter::level(GetParam().rms), GetParam().level, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    LevelMeter, LevelOf,
    testing::Values(LevelRow{"fullScale", 1.0F, 1.0}, LevelRow{"beyondFullScale", 2.0F, 1.0},
                    LevelRow{"minus25Decibels", 0.05623413F, 0.5},
                    LevelRow{"minus50Decibels", 0.0031622776F, 0.0},
                    LevelRow{"minus60Decibels", 0.001F, 0.0}, LevelRow{"digitalSilence", 0.0F, 0.0},
                    LevelRow{"notANumber", std::numeric_limits<float>::quiet_NaN(), 0.0}),
    [](const auto& row) { return row.param.description; });

TEST(LevelMeter, readsAFullScaleSquareWaveAsOne) {
    std::vector<float> square(4096);
    for (std::size_t i = 0; i < square.size(); ++i)
        square[i] = i % 2 == 0 ? 1.0F : -1.0F;
    const Loudness loudness = measure(square);
    EXPECT_EQ(loudness.peak, 1.0F);
    EXPECT_EQ(LevelMeter::level(loudness.rms), 1.0);
}

TEST(LevelMeter, measuresRootMeanSquareAndLargestMagnitude) {
    const Loudness loudness = measure({0.1F, -0.7F, 0.3F, 0.0F});
    EXPECT_EQ(loudness.peak, 0.7F);
    EXPECT_NEAR(loudness.rms, std::sqrt((0.01 + 0.49 + 0.09) / 4), 1e-6);
}

TEST(LevelMeter, readsNothingInAnEmptyBuffer) {
    const Loudness loudness = measure({});
    EXPECT_EQ(loudness.rms, 0.0F);
    EXPECT_EQ(loudness.peak, 0.0F);
}

TEST(LevelMeter, looksAtTheFirstChannelOnly) {
    const Loudness loudness = measure({0.25F, 1.0F, -0.25F, -1.0F}, 2);
    EXPECT_EQ(loudness.peak, 0.25F);
    EXPECT_EQ(loudness.rms, 0.25F);
}

}  // namespace
}  // namespace sayloft
