// SPDX-License-Identifier: MIT
// The program and its real speech helper on a computer that sleeps.
#include "helper/tests/SpeechSamples.h"
#include "tests/endtoend/Dictation.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

class AComputerAsleep : public Dictation {
protected:
    void sleepDuringATranscription(const QString& words) {
        // So that it is still transcribing then.
        signalHelper(SIGSTOP);
        m_desk.say(words);
        ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
        turnEventLoopFor(1s);
        m_desk.sayloft().program().signal(SIGSTOP);
        turnEventLoopFor(60s);
        EXPECT_TRUE(m_desk.transcripts().isEmpty());
        m_desk.sayloft().program().signal(SIGCONT);
        signalHelper(SIGCONT);
    }

    const QTemporaryDir m_directory;
};

TEST_F(AComputerAsleep, forAMinuteDuringATranscriptionBringsItsTextOnce) {
    const auto first = helper::test::speak(m_directory, "the weather is nice today");
    const auto second = helper::test::speak(m_directory, "good morning");
    const QString words = QString::fromStdString(first.words);
    m_desk.startSayloft();
    ASSERT_NO_FATAL_FAILURE(sleepDuringATranscription(first.file));
    ASSERT_TRUE(m_desk.waitForTranscripts(1, 60s)) << m_desk.sayloft().log().toStdString();
    expectInEditor(words);
    turnEventLoopFor(5s);
    EXPECT_EQ(m_desk.transcripts(), QStringList{words});
    m_desk.say(second.file);
    expectInEditor(words + QString::fromStdString(second.words));
}

}  // namespace
}  // namespace sayloft::test
