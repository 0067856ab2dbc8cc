// SPDX-License-Identifier: MIT
// Long runs of the real program. They take from a minute to half an hour each. SAYLOFT_DICTATIONS
// (40 or more) and SAYLOFT_HOLD_MINUTES make them shorter.
#include "tests/endtoend/Dictation.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/TrayClient.h"
#include "tests/support/UsageTrend.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

/// `otherwise`, unless the environment says something else.
int numberFrom(const char* variable, int otherwise) {
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : otherwise;
}

QString sentence(int number) {
    return QStringLiteral("Sentence %1 says that the quick brown fox jumps over the lazy dog.")
        .arg(number);
}

class Endurance : public Dictation {
protected:
    /// A noise in the room for twenty minutes.
    [[nodiscard]] ChildProgram startNoise() {
        const QString file = m_directory.filePath(QStringLiteral("noise.wav"));
        writeSound(file, noise(std::size_t{16000} * 60 * 20));
        return m_desk.room().startPlaying(file);
    }

    /// Dictates some of the noise on a line of its own; returns when the log has its text.
    void dictateLine(int number) {
        m_desk.hold(DictationDesk::dictateEnter);
        turnEventLoopFor(100ms);
        m_desk.letGo(DictationDesk::dictateEnter);
        ASSERT_TRUE(m_desk.waitForTranscripts(number));
        m_lines += sentence(number) + QLatin1Char('\n');
    }

    void expectNoiseInLastRecording() const {
        const Samples recording = readSound(m_desk.lastRecording());
        ASSERT_GE(recording.size(), 1600U);
        const auto loudest = std::max_element(recording.begin(), recording.end());
        EXPECT_GT(*loudest, 1000);
    }

    [[nodiscard]] qint64 pid() { return m_desk.sayloft().program().pid(); }

    QTemporaryDir m_directory;
    QString m_lines;
};

std::vector<RawAnswer> sentences(int count) {
    std::vector<RawAnswer> answers;
    for (int number = 1; number <= count; ++number)
        answers.push_back(RawAnswer::ok(sentence(number).toUtf8()));
    return answers;
}

TEST_F(Endurance, ofAThousandDictationsCostsNothingThatStays) {
    // So long does the heap take to find its size.
    constexpr int warmUp = 300;
    const int dictations = warmUp + numberFrom("SAYLOFT_DICTATIONS", 1000);
    constexpr int step = 20;
    const ChildProgram noise = startNoise();
    m_desk.startSayloft(sentences(dictations));
    UsageTrend trend(pid(), step);
    for (int i = 1; i <= dictations; ++i) {
        ASSERT_NO_FATAL_FAILURE(dictateLine(i));
        if (i % step != 0)
            continue;
        ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
        ASSERT_NO_FATAL_FAILURE(expectNoiseInLastRecording());
        if (i >= warmUp)
            trend.look();
    }
    std::printf("dictations, %s\n", trend.describe().c_str());
    EXPECT_LT(trend.memoryKb(), 0.3);
    EXPECT_LT(trend.memoryGrowthKb(), 1024);
    EXPECT_LT(trend.files(), 0.005);
    EXPECT_LT(trend.threads(), 0.005);
    EXPECT_LT(trend.processorMs(), 0.005);
    EXPECT_TRUE(noise.isRunning());
    expectInEditor(m_lines);
}

TEST_F(Endurance, ofFiveHundredTapsLeavesTheProgramReady) {
    constexpr int taps = 500;
    m_desk.startSayloft({RawAnswer::ok({})});
    std::mt19937 random(500);  // NOLINT(bugprone-*, cert-*): the same run every time
    std::uniform_int_distribution<int> milliseconds(5, 50);
    const auto rest = [&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds(random)));
    };
    for (int i = 0; i < taps; ++i) {
        for (const TestKeyboard::Key key : DictationDesk::dictate)
            m_desk.keyboard().press(key);
        rest();
        m_desk.letGo();
        rest();
    }
    ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }, 30s));
    EXPECT_EQ(m_desk.keyboard().heldModifiers(), 0);
    EXPECT_EQ(m_desk.sayloft().log().count(QStringLiteral("recording @ ")), taps);
    m_desk.say();
    // What was recorded of taps is shorter.
    ASSERT_TRUE(
        waitUntil([&] { return m_desk.recordings().back().size() >= m_desk.sound().size(); }, 30s));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(m_desk.sayloft().program().isRunning());
    EXPECT_EQ(m_desk.editor().textOnce({}), QString());
}

TEST_F(Endurance, ofAMinuteAsleepInTheMiddleOfADictationLosesNothingOfIt) {
    sleepThroughADictation(60s);
}

/// The program sleeps for a minute and wakes up.
void sleep(DictationDesk& desk) {
    desk.sayloft().program().signal(SIGSTOP);
    turnEventLoopFor(60s);
    desk.sayloft().program().signal(SIGCONT);
}

// An attempt is given up after 30 s: it may be made again although its answer is there.
TEST_F(Endurance, ofAMinuteAsleepDuringATranscriptionBringsItsTextOnce) {
    m_desk.startSayloft({RawAnswer::slowly("First", 3s), RawAnswer::ok("First")});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    EXPECT_TRUE(m_desk.transcripts().isEmpty());
    sleep(m_desk);
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectInEditor(QStringLiteral("First"));
    turnEventLoopFor(5s);
    EXPECT_EQ(m_desk.transcripts().size(), 1);
    std::printf("asked %zu times\n", m_desk.recordings().size());
    m_desk.say();
    expectInEditor(QStringLiteral("FirstFirst"));
    expectWholeSoundInLastRecording();
    EXPECT_EQ(m_desk.transcripts().size(), 2);
}

TEST_F(Endurance, ofAMinuteAsleepBetweenDictationsIsForgotten) {
    const TrayClient tray(m_desk.bus());
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.say();
    expectInEditor(QStringLiteral("First"));
    ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
    sleep(m_desk);
    EXPECT_TRUE(tray.tooltipSays(QStringLiteral("'Sayloft: ready'")));
    EXPECT_TRUE(tray.labels().contains(QStringLiteral("First")));
    expectSecondOneWorks();
}

std::chrono::minutes holdTime() {
    return std::chrono::minutes(numberFrom("SAYLOFT_HOLD_MINUTES", 30));
}

TEST_F(Endurance, ofHalfAnHourOfHoldingRecordsAllOfIt) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.hold();
    // Until everything that a dictation needs is there.
    turnEventLoopFor(1min);
    const long memoryBefore = filledKilobytesOf(pid());
    const double processorBefore = processorMillisecondsOf(pid());
    turnEventLoopFor(holdTime() - 1min);
    m_desk.room().play(m_desk.soundFile());
    const long memory = filledKilobytesOf(pid()) - memoryBefore;
    const double processor = processorMillisecondsOf(pid()) - processorBefore;
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1, 60s)) << m_desk.sayloft().log().toStdString();
    const Samples recording = m_desk.recordings().front();
    std::printf("%.1f s recorded, memory %+ld KiB, processor time %.0f ms\n",
                static_cast<double>(recording.size()) / 16000, memory, processor);
    EXPECT_GE(recording.size(),
              std::size_t{16000} * 60 * static_cast<std::size_t>(holdTime().count()));
    const auto tail = static_cast<std::ptrdiff_t>(16000 * 3);
    expectSoundIn(Samples(recording.end() - tail, recording.end()));
    EXPECT_LT(memory, 1024);
    expectSecondOneWorks();
}

}  // namespace
}  // namespace sayloft::test
