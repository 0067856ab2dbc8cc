// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endtoend/DictationDesk.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

namespace sayloft::test {

/// Whole dictations with a speech server that answers as the test says.
class Dictation : public testing::Test {
protected:
    void expectInEditor(const QString& text) {
        EXPECT_EQ(m_desk.editor().textOnce(text).toStdString(), text.toStdString())
            << m_desk.sayloft().log().toStdString();
    }

    /// The sound server may swallow the first 20 ms of what is played.
    static constexpr std::size_t swallowedAtTheStart = 320;

    /// Whether a recording has the sound that was played but for as many samples as may be missing.
    void expectSoundIn(const Samples& recording, std::size_t missing = swallowedAtTheStart) const {
        const Match match = find(m_desk.sound(), recording);
        EXPECT_GE(match.heard, m_desk.sound().size() - missing);
        EXPECT_GT(match.likeness, 0.9);
    }

    void expectWholeSoundInLastRecording() const {
        const std::vector<Samples> recordings = m_desk.recordings();
        ASSERT_FALSE(recordings.empty());
        expectSoundIn(recordings.back());
    }

    /// The program sleeps, as a computer does, from after the sound on until the chord is let go.
    void sleepThroughADictation(std::chrono::milliseconds duration) {
        m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
        m_desk.hold();
        m_desk.room().play(m_desk.soundFile());
        m_desk.sayloft().program().signal(SIGSTOP);
        turnEventLoopFor(duration);
        m_desk.letGo();
        m_desk.sayloft().program().signal(SIGCONT);
        ASSERT_TRUE(m_desk.waitForTranscripts(1));
        expectSoundIn(m_desk.recordings().front());
        ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
        expectSecondOneWorks();
    }

    /// After one dictation with the words "First": another one with the words "Second".
    void expectSecondOneWorks() {
        m_desk.say();
        ASSERT_TRUE(m_desk.waitForTranscripts(2));
        expectInEditor(QStringLiteral("FirstSecond"));
        expectWholeSoundInLastRecording();
    }

    DictationDesk m_desk;
};

}  // namespace sayloft::test
