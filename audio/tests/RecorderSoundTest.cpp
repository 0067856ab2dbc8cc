// SPDX-License-Identifier: MIT
#include "audio/Recorder.h"

#include "audio/tests/TheRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sayloft::test {
namespace {

// Level and boost

TEST_F(TheRecorder, showsTheLevelOfTheRawInputWhileItRecords) {
    EXPECT_EQ(m_recorder.level(), 0.0);
    m_recorder.start();
    EXPECT_EQ(m_recorder.level(), 0.0);
    capture().deliver(tone(4096, 0.05623413F));
    EXPECT_NEAR(m_recorder.level(), 0.5, 1e-6);
}

TEST_F(TheRecorder, showsNoLevelAfterTheStopThoughABufferStillComes) {
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    capture().deliver(tone(4096, 1.0F));
    EXPECT_EQ(m_recorder.level(), 0.0);
}

TEST_F(TheRecorder, leavesSamplesAloneWithoutBoost) {
    m_recorder.boost = false;
    m_recorder.start();
    capture().deliver(tone(10, 0.125F));
    EXPECT_EQ(readSound(m_recorder.stop()->waitUntilFinished())[0], 4096);
}

TEST_F(TheRecorder, amplifiesAQuietVoiceByDefault) {
    m_recorder.start();
    capture().deliver(tone(10, 0.125F));
    EXPECT_EQ(readSound(m_recorder.stop()->waitUntilFinished())[0], 16384);
}

TEST_F(TheRecorder, adaptsItsBoostAfreshForEveryRecording) {
    m_recorder.start();
    capture().deliver(tone(10, 1.0F));
    static_cast<void>(m_recorder.stop());
    m_recorder.start();
    capture().deliver(tone(10, 0.125F));
    EXPECT_EQ(readSound(m_recorder.stop()->waitUntilFinished())[0], 16384);
}

TEST_F(TheRecorder, boostsTheFirstOfTwoChannelsAndAveragesBoth) {
    m_input.deviceList[0].format.channels = 2;
    m_recorder.start();
    capture().deliver({0.25F, 0.25F, -0.25F, 0.0F});
    const Samples samples = readSound(m_recorder.stop()->waitUntilFinished());
    EXPECT_EQ(samples, (Samples{12288, -8192}));
}

// Continuity

class TenMinutesAt : public TheRecorder, public testing::WithParamInterface<int> {};

TEST_P(TenMinutesAt, haveNoGapBetweenBuffers) {
    constexpr int seconds = 600;
    constexpr double frequency = 440;
    const int rate = GetParam();
    m_input.deviceList[0].format = {.sampleRate = static_cast<double>(rate), .channels = 1};
    m_recorder.boost = false;
    m_recorder.start();
    const double step = 2 * std::numbers::pi * frequency;
    for (int frame = 0; frame < seconds * rate; frame += 4096) {
        std::vector<float> buffer(static_cast<std::size_t>(std::min(4096, seconds * rate - frame)));
        for (std::size_t i = 0; i < buffer.size(); ++i)
            buffer[i] =
                static_cast<float>(0.5 * std::sin(step * (frame + static_cast<double>(i)) / rate));
        capture().deliver(std::move(buffer));
    }
    const Samples samples = readSound(m_recorder.stop()->waitUntilFinished());

    ASSERT_EQ(samples.size(), 16000U * seconds);
    // Within one unit of the tone that was spoken, from the first second to the last.
    for (std::size_t i = 200; i < samples.size() - 200; ++i)
        ASSERT_NEAR(samples[i], 16384 * std::sin(step * static_cast<double>(i) / 16000), 2)
            << "at sample " << i;
}

INSTANTIATE_TEST_SUITE_P(TheRecorder, TenMinutesAt, testing::Values(44100, 48000),
                         [](const auto& row) { return "rate" + std::to_string(row.param); });

}  // namespace
}  // namespace sayloft::test
