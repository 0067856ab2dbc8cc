// SPDX-License-Identifier: MIT
#include "audio/MonoResampler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

namespace sayloft {
namespace {

constexpr double outputRate = 16000;

std::vector<float> sine(double frequency, double rate, std::size_t frames) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = static_cast<float>(
            0.5 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / rate));
    return samples;
}

/// Converts a whole stream in buffers of `framesPerBuffer`, the last one shorter.
std::vector<float> convert(std::vector<float> input, AudioFormat from,
                           std::size_t framesPerBuffer) {
    std::optional<MonoResampler> resampler = MonoResampler::create(from, outputRate);
    std::vector<float> output;
    const auto append = [&](std::span<const float> part) {
        output.insert(output.end(), part.begin(), part.end());
    };
    const auto channels = static_cast<std::size_t>(from.channels);
    for (std::size_t at = 0; at < input.size(); at += framesPerBuffer * channels) {
        const std::size_t samples = std::min(framesPerBuffer * channels, input.size() - at);
        append(resampler->convert({.samples = input.data() + at,
                                   .frames = static_cast<int>(samples / channels),
                                   .format = from}));
    }
    append(resampler->flush());
    return output;
}

TEST(MonoResampler, makesRoomForTheConvertedBufferAnd1024FramesMore) {
    EXPECT_EQ(MonoResampler::outputCapacity(16000, 4096, 48000), 2389U);
    EXPECT_EQ(MonoResampler::outputCapacity(16000, 4096, 44100), 2510U);
    EXPECT_EQ(MonoResampler::outputCapacity(16000, 4096, 16000), 5120U);
    EXPECT_EQ(MonoResampler::outputCapacity(16000, 4096, 8000), 9216U);
    EXPECT_EQ(MonoResampler::outputCapacity(16000, 0, 48000), 1024U);
}

TEST(MonoResampler, passesTheOutputRateThroughUnchanged) {
    const std::vector<float> input = sine(440, 16000, 10000);
    EXPECT_EQ(convert(input, {.sampleRate = 16000, .channels = 1}, 4096), input);
}

class FromRate : public testing::TestWithParam<int> {};

TEST_P(FromRate, isTheSameToneWithoutASeamDownToTheLastFrame) {
    const double rate = GetParam();
    const auto frames = static_cast<std::size_t>(rate * 3);
    const std::vector<float> output =
        convert(sine(440, rate, frames), {.sampleRate = rate, .channels = 1}, 4096);
    const std::vector<float> expected = sine(440, outputRate, 48000);
    ASSERT_EQ(output.size(), expected.size());
    // The very ends of a stream ring; a seam between buffers would be in the middle.
    for (std::size_t i = 200; i < output.size() - 200; ++i)
        ASSERT_NEAR(output[i], expected[i], 1e-4) << "at frame " << i;
}

INSTANTIATE_TEST_SUITE_P(MonoResampler, FromRate,
                         testing::Values(8000, 11025, 16000, 22050, 32000, 44100, 48000, 88200,
                                         96000, 192000),
                         [](const auto& row) { return "rate" + std::to_string(row.param); });

TEST(MonoResampler, doesNotDependOnHowTheStreamIsCut) {
    const AudioFormat format{.sampleRate = 44100, .channels = 1};
    const std::vector<float> input = sine(1000, 44100, 44100);
    const std::vector<float> whole = convert(input, format, input.size());
    EXPECT_EQ(convert(input, format, 1), whole);
    EXPECT_EQ(convert(input, format, 333), whole);
    EXPECT_EQ(convert(input, format, 4096), whole);
}

TEST(MonoResampler, averagesTheChannels) {
    const std::vector<float> stereo = {1.0F, 0.0F, 0.5F, 0.25F, -0.5F, 0.5F};
    EXPECT_EQ(convert(stereo, {.sampleRate = 16000, .channels = 2}, 4096),
              (std::vector<float>{0.5F, 0.375F, 0.0F}));
}

TEST(MonoResampler, hearsAsSilenceWhatIsNotANumberAndGoesOn) {
    std::vector<float> input = sine(440, 48000, 48000);
    input[1000] = std::numeric_limits<float>::quiet_NaN();
    input[1001] = std::numeric_limits<float>::infinity();
    for (const float sample : convert(input, {.sampleRate = 48000, .channels = 1}, 4096))
        ASSERT_LE(std::abs(sample), 0.6F);
}

TEST(MonoResampler, losesABufferThatItCannotConvertAndTakesTheNext) {
    const AudioFormat format{.sampleRate = 16000, .channels = 1};
    std::optional<MonoResampler> resampler = MonoResampler::create(format, outputRate);
    std::vector<float> samples(100, 0.5F);
    const AudioFormat other{.sampleRate = 16000, .channels = 2};
    EXPECT_TRUE(resampler->convert({samples.data(), 50, other}).empty());
    EXPECT_TRUE(resampler->convert({nullptr, 100, format}).empty());
    EXPECT_TRUE(resampler->convert({samples.data(), 0, format}).empty());
    EXPECT_EQ(resampler->convert({samples.data(), 100, format}).size() + resampler->flush().size(),
              100U);
}

TEST(MonoResampler, cannotBeMadeForAFormatWithoutFrames) {
    EXPECT_FALSE(MonoResampler::create({.sampleRate = 0, .channels = 1}, outputRate));
    EXPECT_FALSE(MonoResampler::create({.sampleRate = 48000, .channels = 0}, outputRate));
}

}  // namespace
}  // namespace sayloft
