// SPDX-License-Identifier: MIT
#include "audio/Recorder.h"

#include "audio/FailedRecording.h"
#include "audio/tests/TheRecorder.h"
#include "models/Paths.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

const QString noDevice = QStringLiteral("no capture device resolved — using default input\n");

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

// Lifecycle

TEST_F(TheRecorder, removesWhatACrashHasLeftOfOneThatWasToBeKept) {
    const QString part = FailedRecording::file() + QStringLiteral(".part");
    writeFile(part, "half of it");
    writeFile(FailedRecording::file(), "an earlier one");
    const Recorder atTheNextStart(m_input);
    EXPECT_FALSE(QFileInfo::exists(part));
    EXPECT_TRUE(FailedRecording::isKept());
}

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
    m_recorder.stop()->waitUntilFinished();
    m_recorder.start();
    capture().deliver(tone(100, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    EXPECT_EQ(recording->path(), m_recorder.wavURL());
    EXPECT_EQ(readSound(recording->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, givesUpARecordingThatRunsWhenAnotherIsStarted) {
    m_recorder.start();
    m_recorder.start();
    EXPECT_TRUE(m_input.captures[0]->isDestroyed);
    capture().deliver(tone(100, 0.5F));
    EXPECT_EQ(readSound(m_recorder.stop()->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, endsItsCaptureWithItself) {
    {
        Recorder other(m_input);
        other.start();
    }
    EXPECT_TRUE(capture().isDestroyed);
}

TEST_F(TheRecorder, removesWhatACrashHasLeftBehind) {
    writeFile(TEMP_DIR + QStringLiteral("/sayloft_rec.wav"), "the last one");
    writeFile(TEMP_DIR + QStringLiteral("/sayloft_rec-2.wav"), "an overlapping one");
    const Recorder next(m_input);
    EXPECT_EQ(QDir(TEMP_DIR).entryList(QDir::Files),
              QStringList(QStringLiteral("sayloft_rec.wav")));
}

}  // namespace
}  // namespace sayloft::test
