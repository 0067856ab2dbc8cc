// SPDX-License-Identifier: MIT
#include "audio/Recorder.h"

#include "audio/tests/TheRecorder.h"
#include "models/Paths.h"

#include <QDir>

#include <gtest/gtest.h>

#include <thread>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

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
    const Samples samples = readSound(recording->waitUntilFinished());
    ASSERT_EQ(samples.size(), 5096U);
    EXPECT_EQ(samples[5094], 8192);
}

TEST_F(TheRecorder, completesTheFileWhenTheEndDoesNotComeInTime) {
    m_input.finish = FakeAudioInput::Finish::whenTheTestSays;
    m_recorder.start();
    capture().deliver(tone(1000, 0.5F));
    const std::shared_ptr<Recording> recording = m_recorder.stop();
    EXPECT_EQ(readSound(recording->waitUntilFinished(20ms)).size(), 1000U);
    capture().deliver(tone(1000, 0.5F));
    capture().end();
    EXPECT_EQ(readSound(recording->path()).size(), 1000U);
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
    const Samples one = readSound(first->waitUntilFinished());
    const Samples two = readSound(second->waitUntilFinished());
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
    EXPECT_EQ(readSound(inTranscription->waitUntilFinished()).size(), 100U);
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
    EXPECT_EQ(readSound(recording->waitUntilFinished()).size(), 100U);
}

TEST_F(TheRecorder, letsGoOfCapturesThatHaveEnded) {
    for (int hold = 0; hold < 3; ++hold) {
        m_recorder.start();
        static_cast<void>(m_recorder.stop());
    }
    EXPECT_TRUE(m_input.captures[0]->isDestroyed);
    EXPECT_TRUE(m_input.captures[1]->isDestroyed);
}

}  // namespace
}  // namespace sayloft::test
