// SPDX-License-Identifier: MIT
#include "audio/Recorder.h"

#include "audio/tests/TheRecorder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

const QString noDevice = QStringLiteral("no capture device resolved — using default input\n");

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
    EXPECT_EQ(readSound(recording->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, keepsWhatItHasWhenTheMicrophoneIsUnplugged) {
    m_recorder.boost = false;
    m_recorder.start();
    capture().deliver(tone(1000, 0.5F));
    capture().end(QStringLiteral("Entity killed"));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    ASSERT_NE(recording, nullptr);
    EXPECT_EQ(readSound(recording->waitUntilFinished()).size(), 1000U);
    EXPECT_FALSE(m_home.log().contains(QStringLiteral("engine")));
    EXPECT_TRUE(m_home.log().endsWith(QStringLiteral("\nrecording broke off: Entity killed\n")));
}

TEST_F(TheRecorder, saysWhenTheCaptureBreaksOffBeforeTheLastWordHasCome) {
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    capture().deliver(tone(1000, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    capture().end(QStringLiteral("Connection terminated"));
    EXPECT_EQ(readSound(recording->waitUntilFinished()).size(), 1000U);
    EXPECT_TRUE(
        m_home.log().endsWith(QStringLiteral("\nrecording broke off: Connection terminated\n")));
}

TEST_F(TheRecorder, saysNothingOfACaptureThatEndsWithTheHold) {
    m_recorder.start();
    capture().deliver(tone(1000, 0.5F));
    static_cast<void>(m_recorder.stop()->waitUntilFinished());
    EXPECT_EQ(m_home.log(), QStringLiteral("recording @ 16000Hz (built-in mic: true)\n"));
}

TEST_F(TheRecorder, goesOnAfterABufferThatCannotBeConverted) {
    m_recorder.start();
    capture().deliver(tone(100, 0.5F));
    AudioBuffer notFloat{.samples = nullptr, .frames = 100, .format = {16000, 1}};
    capture().request.onBuffer(notFloat);
    capture().deliver(tone(100, 0.5F));
    EXPECT_EQ(readSound(m_recorder.stop()->waitUntilFinished()).size(), 200U);
}

}  // namespace
}  // namespace sayloft::test
