// SPDX-License-Identifier: MIT
// Long runs of the real program. They take from a minute to half an hour each.
#include "tests/endtoend/Dictation.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

class Endurance : public Dictation {
protected:
    struct Usage {
        double memoryKb;
        double files;
        double threads;
        double processorMs;
    };

    [[nodiscard]] Usage usage() {
        const qint64 pid = m_desk.sayloft().program().pid();
        return {.memoryKb = static_cast<double>(proportionalKilobytesOf(pid)),
                .files = static_cast<double>(openFilesOf(pid)),
                .threads = static_cast<double>(threadsOf(pid)),
                .processorMs = processorMillisecondsOf(pid)};
    }

    /// A dictation without a sound; returns when its text has been pasted and the microphone
    /// closed.
    void dictateNothingMuch(qsizetype transcripts) {
        m_desk.hold();
        m_desk.letGo();
        ASSERT_TRUE(m_desk.waitForTranscripts(transcripts));
    }
};

/// Of the least squares line through values at 0, 1, 2 and so on.
double slopeOf(const std::vector<double>& values) {
    const auto count = static_cast<double>(values.size());
    const double middle = (count - 1) / 2;
    double mean = 0;
    for (const double value : values)
        mean += value / count;
    double rise = 0;
    double run = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double x = static_cast<double>(i) - middle;
        rise += x * (values[i] - mean);
        run += x * x;
    }
    return rise / run;
}

TEST_F(Endurance, ofAThousandDictationsCostsNothingThatStays) {
    constexpr int dictations = 1000;
    constexpr int warmUp = 200;
    constexpr int step = 20;
    m_desk.startSayloft({RawAnswer::ok("w")});
    std::vector<double> memory;
    std::vector<double> files;
    std::vector<double> threads;
    std::vector<double> processor;
    double before = 0;
    for (int i = 1; i <= dictations; ++i) {
        ASSERT_NO_FATAL_FAILURE(dictateNothingMuch(i));
        if (i % step != 0)
            continue;
        ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
        const Usage now = usage();
        if (i > warmUp) {
            memory.push_back(now.memoryKb);
            files.push_back(now.files);
            threads.push_back(now.threads);
            processor.push_back((now.processorMs - before) / step);
        }
        before = now.processorMs;
    }
    std::printf(
        "per dictation, from number %d to %d: memory %+.3f KiB (now %.0f KiB), files %+.4f (%.0f), "
        "threads %+.4f (%.0f), processor time %.1f ms, of which each costs %+.4f ms more\n",
        warmUp, dictations, slopeOf(memory) / step, memory.back(), slopeOf(files) / step,
        files.back(), slopeOf(threads) / step, threads.back(), processor.back(),
        slopeOf(processor) / step);
    EXPECT_LT(slopeOf(memory) / step, 1.0);
    EXPECT_LT(slopeOf(files) / step, 0.005);
    EXPECT_LT(slopeOf(threads) / step, 0.005);
    EXPECT_LT(slopeOf(processor) / step, 0.01);
    expectInEditor(QString(dictations, QLatin1Char('w')));
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
    const auto before = static_cast<qsizetype>(m_desk.recordings().size());
    m_desk.say();
    ASSERT_TRUE(waitUntil([&] { return std::ssize(m_desk.recordings()) > before; }, 30s));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(m_desk.sayloft().program().isRunning());
    EXPECT_EQ(m_desk.editor().textOnce({}), QString());
}

TEST_F(Endurance, ofAMinuteAsleepInTheMiddleOfADictationLosesNothingOfIt) {
    sleepThroughADictation(60s);
}

/// Half an hour, unless SAYLOFT_HOLD_MINUTES says otherwise.
std::chrono::minutes holdTime() {
    bool isNumber = false;
    const int minutes = qEnvironmentVariableIntValue("SAYLOFT_HOLD_MINUTES", &isNumber);
    return std::chrono::minutes(isNumber ? minutes : 30);
}

TEST_F(Endurance, ofHalfAnHourOfHoldingRecordsAllOfIt) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.hold();
    // Until everything that a dictation needs is there.
    turnEventLoopFor(1min);
    const Usage before = usage();
    turnEventLoopFor(holdTime() - 1min);
    m_desk.room().play(m_desk.soundFile());
    const Usage after = usage();
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1, 60s)) << m_desk.sayloft().log().toStdString();
    const Samples recording = m_desk.recordings().front();
    std::printf("%.1f s recorded, memory %+.0f KiB, processor time %.0f ms\n",
                static_cast<double>(recording.size()) / 16000, after.memoryKb - before.memoryKb,
                after.processorMs - before.processorMs);
    EXPECT_GE(recording.size(),
              std::size_t{16000} * 60 * static_cast<std::size_t>(holdTime().count()));
    const auto tail = static_cast<std::ptrdiff_t>(16000 * 3);
    expectSoundIn(Samples(recording.end() - tail, recording.end()));
    EXPECT_LT(after.memoryKb - before.memoryKb, 1024);
    expectSecondOneWorks();
}

}  // namespace
}  // namespace sayloft::test
