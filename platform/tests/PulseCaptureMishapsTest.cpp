// SPDX-License-Identifier: MIT
#include "platform/linux/AudioInputPulse.h"

#include "platform/tests/APulseCapture.h"

#include <gtest/gtest.h>

#include <chrono>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

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

/// Ends before the server has so much as answered, which then makes what it was asked for.
class ACaptureThatIsOverBeforeItsStreamIsMade : public APulseCapture {
protected:
    std::unique_ptr<AudioCapture> captureOver() {
        server.freeze();
        auto capture = input.startCapture(sound.request()).capture;
        capture->finish();
        EXPECT_TRUE(sound.waitForEnd(1s));
        return capture;
    }

    [[nodiscard]] bool isRecording() const {
        return server.list(QStringLiteral("source-outputs")).contains("\"Dictation\"");
    }

    /// What was asked for before, as all that comes from one connection, is done by then.
    void expectAllMicrophonesToBeClosedOnceTheServerGoesOn() {
        server.thaw();
        expectNextCaptureWorks();
        EXPECT_TRUE(waitUntil([this] { return !isRecording(); }, 3s));
    }
};

TEST_F(ACaptureThatIsOverBeforeItsStreamIsMade, leavesNoMicrophoneOpen) {
    captureOver().reset();
    expectAllMicrophonesToBeClosedOnceTheServerGoesOn();
}

TEST_F(ACaptureThatIsOverBeforeItsStreamIsMade, leavesNoMicrophoneOpenWhileItIsKept) {
    const auto capture = captureOver();
    expectAllMicrophonesToBeClosedOnceTheServerGoesOn();
}

TEST_F(APulseCapture, ofAServerThatStaysFrozenEndsByItself) {
    server.freeze();
    const auto capture = input.startCapture(sound.request()).capture;
    ASSERT_TRUE(capture);
    EXPECT_TRUE(sound.waitForEnd(3s));
}

// The player is a second ahead of the server, which makes up for the time that it was frozen.
TEST_F(APulseCapture, survivesAShortFreezeWithoutAGap) {
    const auto capture = startFlowing();
    ChildProgram player = server.startPlaying(m_numbered);
    ASSERT_TRUE(waitUntil([this] { return sound.peak() > 0.1F; }));
    server.freeze();
    turnEventLoopFor(100ms);
    const std::size_t frames = sound.frames();
    turnEventLoopFor(100ms);
    EXPECT_EQ(sound.frames(), frames);
    server.thaw();
    ASSERT_TRUE(waitUntil([&player] { return !player.isRunning(); }));
    capture->finish();
    ASSERT_TRUE(sound.waitForEnd(1s));
    expectEveryNumber();
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

}  // namespace
}  // namespace sayloft::test
