// SPDX-License-Identifier: MIT
#include "platform/linux/AudioInputPulse.h"

#include "platform/tests/APulseCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

TEST_F(APulseCapture, hearsWhatIsSpoken) {
    const QString voice = m_directory.filePath(QStringLiteral("voice.wav"));
    run(QStringLiteral("flite"),
        {QStringLiteral("-voice"), QStringLiteral("rms"), QStringLiteral("-t"),
         QStringLiteral("a dog ran to the river"), QStringLiteral("-o"), voice});
    const QString spoken = m_directory.filePath(QStringLiteral("spoken.wav"));
    run(QStringLiteral("sox"),
        {QStringLiteral("-D"), voice, spoken, QStringLiteral("pad"), QStringLiteral("0.1")});
    const auto capture = input.startCapture(sound.request(find(builtin))).capture;
    ASSERT_TRUE(capture);
    server.play(spoken);
    capture->finish();
    ASSERT_TRUE(sound.waitForEnd(1s));
    EXPECT_GT(signalToNoise(readWav(voice), sound.samples()), 60);
}

TEST_F(APulseCapture, losesNothingBetweenTwoBuffers) {
    const auto capture = input.startCapture(sound.request()).capture;
    ASSERT_TRUE(capture);
    server.play(m_numbered);
    capture->finish();
    ASSERT_TRUE(sound.waitForEnd(1s));
    expectEveryNumber();
}

TEST_F(APulseCapture, deliversBuffersOfOneSizeAndAShorterLastOne) {
    const auto capture = input.startCapture(sound.request()).capture;
    ASSERT_TRUE(capture);
    ASSERT_TRUE(sound.waitForFrames(std::size_t{2} * 4096));
    capture->finish();
    ASSERT_TRUE(sound.waitForEnd(1s));
    std::vector<int> sizes = sound.bufferSizes();
    EXPECT_LE(sizes.back(), 4096);
    sizes.pop_back();
    EXPECT_EQ(std::count(sizes.begin(), sizes.end(), 4096), std::ssize(sizes));
    EXPECT_TRUE(sound.isInOrder());
}

TEST_F(APulseCapture, deliversTheFirstSampleWithinATenthOfASecond) {
    std::vector<double> latencies;
    for (int i = 0; i < 20; ++i) {
        sound.clear();
        const auto begin = Clock::now();
        const auto capture = input.startCapture(sound.request(find(builtin), 160)).capture;
        ASSERT_TRUE(capture);
        ASSERT_TRUE(sound.waitForFrames(160));
        latencies.push_back(
            std::chrono::duration<double, std::milli>(sound.firstBuffer() - begin).count());
    }
    std::sort(latencies.begin(), latencies.end());
    RecordProperty("median_ms", std::to_string(latencies[10]));
    RecordProperty("longest_ms", std::to_string(latencies.back()));
    EXPECT_LT(latencies[10], 100);
}

// At the end up to 40 ms are on their way: two fragments of 20 ms.
TEST_F(APulseCapture, hearsAfterTheEndWhatWasOnItsWay) {
    const auto capture = startFlowing();
    const ChildProgram player = server.startPlaying(m_numbered);
    ASSERT_TRUE(waitUntil([this] { return sound.peak() > 0.1F; }));
    const int heardBefore = numbersIn(sound.samples()).back();
    capture->finish();
    ASSERT_TRUE(sound.waitForEnd(1s));
    const std::vector<int> numbers = numbersIn(sound.samples());
    EXPECT_GE(numbers.back(), heardBefore + static_cast<int>(rate * 40 / 1000));
    EXPECT_TRUE(areConsecutive(numbers));
}

TEST_F(APulseCapture, endsOnceHoweverOftenItIsFinished) {
    const auto capture = startFlowing();
    const auto begin = Clock::now();
    capture->finish();
    capture->finish();
    EXPECT_LT(since(begin), 20ms);
    ASSERT_TRUE(sound.waitForEnd(300ms));
    capture->finish();
    turnEventLoopFor(300ms);
    EXPECT_EQ(sound.ends(), 1);
}

TEST_F(APulseCapture, startsWhileTheOneBeforeIsStillEnding) {
    const auto first = startFlowing();
    first->finish();
    CapturedSound second;
    const auto capture = input.startCapture(second.request()).capture;
    ASSERT_TRUE(capture);
    EXPECT_TRUE(second.waitForFrames(4096));
    EXPECT_EQ(sound.ends(), 1);
}

}  // namespace
}  // namespace sayloft::test
