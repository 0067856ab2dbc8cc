// SPDX-License-Identifier: MIT
#include "audio/Recorder.h"

#include "models/Paths.h"
#include "tests/support/FakeAudioInput.h"
#include "tests/support/TempHome.h"
#include "tests/support/Waveform.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <thread>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::FakeAudioInput;

constexpr std::uint32_t builtIn = fourCharCode("bltn");
const QString noDevice = QStringLiteral("no capture device resolved — using default input\n");

/// A microphone at 16 kHz, so that what is delivered is what is in the file.
FakeAudioInput::Device laptopMicrophone() {
    return {.id = 1,
            .transport = builtIn,
            .uid = QStringLiteral("laptop"),
            .format = {.sampleRate = 16000, .channels = 1}};
}

std::vector<float> tone(std::size_t frames, float amplitude) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = amplitude * (i % 2 == 0 ? 1.0F : -1.0F);
    return samples;
}

class TheRecorder : public testing::Test {
protected:
    TheRecorder() { m_input.deviceList = {laptopMicrophone()}; }

    FakeAudioInput::Capture& capture() { return *m_input.captures.back(); }

    test::TempHome m_home;
    FakeAudioInput m_input;
    Recorder m_recorder{m_input};
};

// Choosing the device

TEST_F(TheRecorder, usesTheDeviceThatIsConfigured) {
    m_input.deviceList.push_back({.id = 2, .uid = QStringLiteral("headset")});
    m_recorder.deviceUID = QStringLiteral("headset");
    m_recorder.start();
    EXPECT_EQ(capture().request.device, 2U);
    EXPECT_EQ(m_home.log(), QStringLiteral("recording @ 48000Hz (built-in mic: true)\n"));
}

TEST_F(TheRecorder, prefersTheBuiltInMicrophoneWhenNothingIsConfigured) {
    m_input.defaultFormat = {.sampleRate = 44100, .channels = 2};
    m_recorder.start();
    EXPECT_EQ(capture().request.device, 1U);
    EXPECT_EQ(m_home.log(), QStringLiteral("recording @ 16000Hz (built-in mic: true)\n"));
}

TEST_F(TheRecorder, fallsBackToTheBuiltInMicrophoneForAnUnknownDevice) {
    m_recorder.deviceUID = QStringLiteral("left at the office");
    m_recorder.start();
    EXPECT_EQ(capture().request.device, 1U);
    EXPECT_FALSE(m_home.log().contains(noDevice));
}

TEST_F(TheRecorder, fallsBackToTheDefaultInputWithOneLineInTheLog) {
    m_input.deviceList = {{.id = 2, .transport = fourCharCode("usb ")}};
    m_input.defaultFormat = {.sampleRate = 44100.7, .channels = 2};
    m_recorder.deviceUID = QStringLiteral("left at the office");
    m_recorder.start();
    EXPECT_EQ(capture().request.device, std::nullopt);
    EXPECT_EQ(m_home.log(),
              noDevice + QStringLiteral("recording @ 44100Hz (built-in mic: false)\n"));
}

TEST_F(TheRecorder, asksForBuffersOf4096Frames) {
    m_recorder.start();
    EXPECT_EQ(capture().request.framesPerBuffer, 4096);
}

// Failures

TEST_F(TheRecorder, recordsNothingWithoutAnInputFormat) {
    m_input.deviceList.clear();
    m_recorder.start();
    EXPECT_EQ(m_recorder.stop(), nullptr);
    EXPECT_EQ(
        m_home.log(),
        noDevice + QStringLiteral("recording @ 0Hz (built-in mic: false)\nno input format\n"));
    EXPECT_FALSE(QFileInfo::exists(m_recorder.wavURL()));
}

TEST_F(TheRecorder, neverRecordsAConfiguredDeviceThatHasNoInput) {
    m_input.deviceList.push_back({.id = 2, .hasInput = false, .uid = QStringLiteral("speakers")});
    m_recorder.deviceUID = QStringLiteral("speakers");
    m_recorder.start();
    EXPECT_EQ(m_recorder.stop(), nullptr);
    EXPECT_TRUE(m_input.captures.empty());
    EXPECT_TRUE(m_home.log().endsWith(QStringLiteral("\nno input format\n")));
}

TEST_F(TheRecorder, recordsNothingWhenItsFileCannotBeOpened) {
    QDir().mkpath(m_recorder.wavURL());
    m_recorder.start();
    EXPECT_EQ(m_recorder.stop(), nullptr);
    EXPECT_TRUE(m_input.captures.empty());
    EXPECT_EQ(m_home.log(), QStringLiteral("recording @ 16000Hz (built-in mic: true)\n"
                                           "could not open output file\n"));
}

TEST_F(TheRecorder, recordsNothingWhenTheCaptureCannotBeStarted) {
    m_input.startError = QStringLiteral("the device is busy");
    m_recorder.start();
    EXPECT_EQ(m_recorder.level(), 0.0);
    EXPECT_EQ(m_recorder.stop(), nullptr);
    EXPECT_TRUE(
        m_home.log().endsWith(QStringLiteral("\nengine start failed: the device is busy\n")));
}

TEST_F(TheRecorder, recordsNothingWhenTheCaptureBreaksOffBeforeItsFirstSample) {
    m_recorder.start();
    capture().end(QStringLiteral("Access denied"));
    EXPECT_EQ(m_recorder.stop(), nullptr);
    EXPECT_TRUE(m_home.log().endsWith(QStringLiteral("\nengine start failed: Access denied\n")));
}

TEST_F(TheRecorder, recordsAgainAfterAFailedStart) {
    m_input.startError = QStringLiteral("the device is busy");
    m_recorder.start();
    m_input.startError.clear();
    m_recorder.start();
    capture().deliver(tone(100, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_NE(recording, nullptr);
    EXPECT_EQ(recording->path(), m_recorder.wavURL());
    EXPECT_EQ(test::readSound(recording->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, keepsWhatItHasWhenTheMicrophoneIsUnplugged) {
    m_recorder.boost = false;
    m_recorder.start();
    capture().deliver(tone(1000, 0.5F));
    capture().end(QStringLiteral("Entity killed"));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_NE(recording, nullptr);
    EXPECT_EQ(test::readSound(recording->waitUntilFinished()).size(), 1000U);
    EXPECT_FALSE(m_home.log().contains(QStringLiteral("engine")));
}

TEST_F(TheRecorder, goesOnAfterABufferThatCannotBeConverted) {
    m_recorder.start();
    capture().deliver(tone(100, 0.5F));
    AudioBuffer notFloat{.samples = nullptr, .frames = 100, .format = {16000, 1}};
    capture().request.onBuffer(notFloat);
    capture().deliver(tone(100, 0.5F));
    EXPECT_EQ(test::readSound(m_recorder.stop()->waitUntilFinished()).size(), 200U);
}

// Lifecycle

TEST_F(TheRecorder, hasNothingToStopWithoutAStart) {
    EXPECT_EQ(m_recorder.stop(), nullptr);
    EXPECT_EQ(m_home.log(), QString());
    EXPECT_FALSE(QFileInfo::exists(TEMP_DIR));
}

TEST_F(TheRecorder, hasNothingToStopTwice) {
    m_recorder.start();
    EXPECT_NE(m_recorder.stop(), nullptr);
    EXPECT_EQ(m_recorder.stop(), nullptr);
}

TEST_F(TheRecorder, keepsItsFileFromEverybodyElse) {
    m_recorder.start();
    const auto recording = m_recorder.stop();
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                            QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    EXPECT_EQ(recording->path(), TEMP_DIR + QStringLiteral("/sayloft_rec.wav"));
    EXPECT_FALSE(QFile::permissions(TEMP_DIR) & others);
    EXPECT_FALSE(QFile::permissions(recording->path()) & others);
}

TEST_F(TheRecorder, overwritesTheRecordingBefore) {
    m_recorder.start();
    capture().deliver(tone(5000, 0.5F));
    static_cast<void>(m_recorder.stop());
    m_recorder.start();
    capture().deliver(tone(100, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    EXPECT_EQ(recording->path(), m_recorder.wavURL());
    EXPECT_EQ(test::readSound(recording->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, givesUpARecordingThatRunsWhenAnotherIsStarted) {
    m_recorder.start();
    m_recorder.start();
    EXPECT_TRUE(m_input.captures[0]->isDestroyed);
    capture().deliver(tone(100, 0.5F));
    EXPECT_EQ(test::readSound(m_recorder.stop()->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, endsItsCaptureWithItself) {
    {
        Recorder other(m_input);
        other.start();
    }
    EXPECT_TRUE(capture().isDestroyed);
}

TEST_F(TheRecorder, removesWhatACrashHasLeftBehind) {
    test::writeFile(TEMP_DIR + QStringLiteral("/sayloft_rec.wav"), "the last one");
    test::writeFile(TEMP_DIR + QStringLiteral("/sayloft_rec-2.wav"), "an overlapping one");
    const Recorder next(m_input);
    EXPECT_EQ(QDir(TEMP_DIR).entryList(QDir::Files),
              QStringList(QStringLiteral("sayloft_rec.wav")));
}

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
    EXPECT_EQ(test::readSound(m_recorder.stop()->waitUntilFinished())[0], 4096);
}

TEST_F(TheRecorder, amplifiesAQuietVoiceByDefault) {
    m_recorder.start();
    capture().deliver(tone(10, 0.125F));
    EXPECT_EQ(test::readSound(m_recorder.stop()->waitUntilFinished())[0], 16384);
}

TEST_F(TheRecorder, adaptsItsBoostAfreshForEveryRecording) {
    m_recorder.start();
    capture().deliver(tone(10, 1.0F));
    static_cast<void>(m_recorder.stop());
    m_recorder.start();
    capture().deliver(tone(10, 0.125F));
    EXPECT_EQ(test::readSound(m_recorder.stop()->waitUntilFinished())[0], 16384);
}

TEST_F(TheRecorder, boostsTheFirstOfTwoChannelsAndAveragesBoth) {
    m_input.deviceList[0].format.channels = 2;
    m_recorder.start();
    capture().deliver({0.25F, 0.25F, -0.25F, 0.0F});
    const test::Samples samples = test::readSound(m_recorder.stop()->waitUntilFinished());
    EXPECT_EQ(samples, (test::Samples{12288, -8192}));
}

// The end of a recording

TEST_F(TheRecorder, isStoppedAtOnceAndHandsOverTheLastWordLater) {
    m_recorder.boost = false;
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    capture().deliver(tone(4096, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_TRUE(capture().isFinishing);
    const std::jthread audioThread([this] {
        std::this_thread::sleep_for(50ms);
        capture().deliver(tone(1000, 0.25F));
        capture().end();
    });
    const test::Samples samples = test::readSound(recording->waitUntilFinished());
    ASSERT_EQ(samples.size(), 5096U);
    EXPECT_EQ(samples[5094], 8192);
}

TEST_F(TheRecorder, completesTheFileWhenTheEndDoesNotComeInTime) {
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    capture().deliver(tone(1000, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    EXPECT_EQ(test::readSound(recording->waitUntilFinished(20ms)).size(), 1000U);
    capture().deliver(tone(1000, 0.5F));
    capture().end();
    EXPECT_EQ(test::readSound(recording->path()).size(), 1000U);
}

TEST_F(TheRecorder, losesNothingOfTwoHoldsThatOverlap) {
    m_recorder.boost = false;
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    std::shared_ptr<Recording> first = m_recorder.stop();
    m_recorder.start();
    m_input.captures[1]->deliver(tone(100, 0.25F));
    m_input.captures[0]->deliver(tone(200, 0.5F));
    m_input.captures[0]->end();
    m_input.captures[1]->deliver(tone(100, 0.25F));
    std::shared_ptr<Recording> second = m_recorder.stop();
    m_input.captures[1]->end();

    EXPECT_EQ(second->path(), TEMP_DIR + QStringLiteral("/sayloft_rec-2.wav"));
    const test::Samples one = test::readSound(first->waitUntilFinished());
    const test::Samples two = test::readSound(second->waitUntilFinished());
    ASSERT_EQ(one.size(), 200U);
    ASSERT_EQ(two.size(), 200U);
    EXPECT_EQ(one[0], 16384);
    EXPECT_EQ(two[0], 8192);
    first.reset();
    second.reset();
    EXPECT_EQ(QDir(TEMP_DIR).entryList(QDir::Files),
              QStringList(QStringLiteral("sayloft_rec.wav")));
}

TEST_F(TheRecorder, doesNotOverwriteARecordingThatIsStillBeingTranscribed) {
    m_recorder.start();
    capture().deliver(tone(100, 0.5F));
    const std::shared_ptr<Recording> inTranscription = m_recorder.stop();
    m_recorder.start();
    const std::shared_ptr<Recording> next = m_recorder.stop();
    EXPECT_NE(next->path(), inTranscription->path());
    EXPECT_EQ(test::readSound(inTranscription->path()).size(), 100U);
}

TEST_F(TheRecorder, letsNoForgottenCaptureWriteIntoTheNextRecording) {
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    static_cast<void>(m_recorder.stop());
    m_recorder.start();
    m_input.captures[0]->deliver(tone(5000, 0.5F));
    m_input.captures[0]->end();
    m_input.captures[1]->deliver(tone(100, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    m_input.captures[1]->end();
    EXPECT_EQ(recording->path(), m_recorder.wavURL());
    EXPECT_EQ(test::readSound(recording->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, letsGoOfCapturesThatHaveEnded) {
    for (int hold = 0; hold < 3; ++hold) {
        m_recorder.start();
        static_cast<void>(m_recorder.stop());
    }
    EXPECT_TRUE(m_input.captures[0]->isDestroyed);
    EXPECT_TRUE(m_input.captures[1]->isDestroyed);
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
    const test::Samples samples = test::readSound(m_recorder.stop()->waitUntilFinished());

    ASSERT_EQ(samples.size(), 16000U * seconds);
    // Within one unit of the tone that was spoken, from the first second to the last.
    for (std::size_t i = 200; i < samples.size() - 200; ++i)
        ASSERT_NEAR(samples[i], 16384 * std::sin(step * static_cast<double>(i) / 16000), 2)
            << "at sample " << i;
}

INSTANTIATE_TEST_SUITE_P(TheRecorder, TenMinutesAt, testing::Values(44100, 48000),
                         [](const auto& row) { return "rate" + std::to_string(row.param); });

}  // namespace
}  // namespace sayloft
