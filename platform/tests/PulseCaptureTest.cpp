// SPDX-License-Identifier: MIT
#include "platform/linux/AudioInputPulse.h"

#include "platform/tests/CapturedSound.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <numeric>

#include <gtest/gtest.h>

using namespace sayloft;
using namespace sayloft::test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::size_t rate = 16000;

const SoundServer::Properties usbMicrophone{{QStringLiteral("device.bus"), QStringLiteral("usb")}};

std::chrono::milliseconds since(Clock::time_point begin) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
}

constexpr int lastNumber = 32000;

/// Frame number n has the value n, so that every captured frame tells which one it is. A tenth of a
/// second of silence comes first.
std::vector<std::int16_t> numberedFrames() {
    std::vector<std::int16_t> frames(rate / 10 + lastNumber);
    std::iota(frames.end() - lastNumber, frames.end(), std::int16_t{1});
    return frames;
}

/// The numbers of numbered frames, without the silence before them.
std::vector<int> numbersIn(const std::vector<float>& samples) {
    std::vector<int> numbers;
    for (const float sample : samples) {
        const int number = static_cast<int>(std::lround(sample * 32768));
        if (number > 0 || !numbers.empty())
            numbers.push_back(number);
    }
    return numbers;
}

bool areConsecutive(const std::vector<int>& numbers) {
    return std::adjacent_find(numbers.begin(), numbers.end(),
                              [](int a, int b) { return b != a + 1; }) == numbers.end();
}

}  // namespace

class APulseCapture : public testing::Test {
protected:
    APulseCapture() {
        writeWav(m_numbered, numberedFrames(), rate);
        m_ready = waitUntil([this] { return find(builtin).has_value(); });
    }

    std::optional<AudioDeviceId> find(const QString& uid) const {
        for (const AudioDeviceId id : input.devices()) {
            if (input.uid(id) == uid)
                return id;
        }
        return std::nullopt;
    }

    void plugInUsb() {
        server.addMicrophone(usb, usbMicrophone);
        ASSERT_TRUE(waitUntil([this] { return find(usb).has_value(); }));
    }

    /// Starts a capture and waits until it delivers.
    std::unique_ptr<AudioCapture> startFlowing(std::optional<AudioDeviceId> device = std::nullopt) {
        EXPECT_TRUE(m_ready);
        AudioCaptureResult result = input.startCapture(sound.request(device, 320));
        EXPECT_EQ(result.error, QString());
        EXPECT_TRUE(sound.waitForFrames(1));
        return std::move(result.capture);
    }

    void expectNextCaptureWorks() {
        sound.clear();
        const auto capture = startFlowing();
        ASSERT_TRUE(capture);
        capture->finish();
        EXPECT_TRUE(sound.waitForEnd(1s));
    }

    SoundServer server;
    AudioInputPulse input;
    CapturedSound sound;
    const QString builtin = QStringLiteral("builtin");
    const QString usb = QStringLiteral("usb");
    QTemporaryDir m_directory;
    QString m_numbered = m_directory.filePath(QStringLiteral("numbered.wav"));
    bool m_ready = false;
};

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
    std::vector<int> numbers = numbersIn(sound.samples());
    ASSERT_GE(numbers.size(), std::size_t{lastNumber});
    numbers.resize(lastNumber);
    EXPECT_EQ(numbers.front(), 1);
    EXPECT_TRUE(areConsecutive(numbers));
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

TEST_F(APulseCapture, ofAnUnknownDeviceDoesNotStart) {
    const AudioCaptureResult result = input.startCapture(sound.request(4711));
    EXPECT_FALSE(result.capture);
    EXPECT_EQ(result.error, QStringLiteral("no such microphone"));
}

TEST_F(APulseCapture, ofADeviceThatIsUnpluggedMeanwhileEnds) {
    plugInUsb();
    const AudioDeviceId device = *find(usb);
    server.freeze();
    const auto capture = input.startCapture(sound.request(device, 320)).capture;
    ASSERT_TRUE(capture);
    server.thaw();
    server.removeMicrophone(usb);
    EXPECT_TRUE(sound.waitForEnd(1s));
    EXPECT_EQ(sound.ends(), 1);
}

TEST_F(APulseCapture, endsWhenTheChosenDeviceIsUnplugged) {
    plugInUsb();
    const auto capture = startFlowing(find(usb));
    server.removeMicrophone(usb);
    EXPECT_TRUE(sound.waitForEnd(1s));
    const std::size_t frames = sound.frames();
    turnEventLoopFor(300ms);
    EXPECT_EQ(sound.frames(), frames);
    EXPECT_EQ(sound.ends(), 1);
    expectNextCaptureWorks();
}

TEST_F(APulseCapture, ofTheDefaultGoesOnWithTheNextMicrophone) {
    plugInUsb();
    server.setDefaultMicrophone(usb);
    const auto capture = startFlowing();
    server.removeMicrophone(usb);
    const std::size_t frames = sound.frames();
    EXPECT_TRUE(sound.waitForFrames(frames + rate));
    EXPECT_EQ(sound.ends(), 0);
}

TEST_F(APulseCapture, neverHearsTheSpeakersInsteadOfTheLastMicrophone) {
    const auto capture = startFlowing();
    server.removeMicrophone(builtin);
    EXPECT_TRUE(sound.waitForEnd(1s));
    server.play(m_numbered);
    EXPECT_EQ(sound.peak(), 0);
}

TEST_F(APulseCapture, endsWithTheServerAndTheNextOneRecordsAgain) {
    const auto capture = startFlowing();
    server.kill();
    EXPECT_TRUE(sound.waitForEnd(1s));
    EXPECT_EQ(sound.ends(), 1);
    capture->finish();
    server.restart();
    ASSERT_TRUE(waitUntil([this] { return find(builtin).has_value(); }, 3s));
    expectNextCaptureWorks();
}

TEST_F(APulseCapture, endsWhenTheServerFreezes) {
    const auto capture = startFlowing();
    server.freeze();
    EXPECT_TRUE(sound.waitForEnd(1s));
    server.thaw();
    expectNextCaptureWorks();
}

TEST_F(APulseCapture, ofAFrozenServerNeverKeepsTheMainThreadFromWorking) {
    server.freeze();
    const auto begin = Clock::now();
    auto capture = input.startCapture(sound.request()).capture;
    ASSERT_TRUE(capture);
    capture->finish();
    EXPECT_LT(since(begin), 20ms);
    EXPECT_TRUE(sound.waitForEnd(300ms));
    const auto beginOfEnd = Clock::now();
    capture.reset();
    EXPECT_LT(since(beginOfEnd), 20ms);
}

TEST_F(APulseCapture, ofAServerThatStaysFrozenEndsByItself) {
    server.freeze();
    const auto capture = input.startCapture(sound.request()).capture;
    ASSERT_TRUE(capture);
    EXPECT_TRUE(sound.waitForEnd(3s));
}

TEST_F(APulseCapture, survivesAShortFreezeWithoutAGap) {
    const auto capture = startFlowing();
    const ChildProgram player = server.startPlaying(m_numbered);
    ASSERT_TRUE(waitUntil([this] { return sound.peak() > 0.1F; }));
    server.freeze();
    turnEventLoopFor(200ms);
    server.thaw();
    ASSERT_TRUE(waitUntil([this] { return sound.peak() > 0.6F; }));
    EXPECT_EQ(sound.ends(), 0);
}

TEST_F(APulseCapture, endsWhenTheSourceIsSuspended) {
    const auto capture = startFlowing(find(builtin));
    run(QStringLiteral("pactl"),
        {QStringLiteral("suspend-source"), builtin, QStringLiteral("true")});
    EXPECT_TRUE(sound.waitForEnd(1s));
}

TEST_F(APulseCapture, canBeDestroyedAtAnyTime) {
    input.startCapture(sound.request()).capture.reset();
    startFlowing().reset();
    {
        const auto finishing = startFlowing();
        finishing->finish();
    }
    server.freeze();
    input.startCapture(sound.request()).capture.reset();
    server.thaw();
    auto orphan = startFlowing();
    server.kill();
    orphan.reset();
    turnEventLoopFor(700ms);
    EXPECT_LE(sound.ends(), 1);
    EXPECT_TRUE(sound.isInOrder());
}
