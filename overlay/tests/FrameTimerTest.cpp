// SPDX-License-Identifier: MIT
#include "overlay/FrameTimer.h"

#include "tests/support/WaitUntil.h"

#include <thread>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

TEST(FrameTimer, firesSixtyTimesASecond) {
    int frames = 0;
    FrameTimer timer([&frames] { ++frames; });
    const auto begin = Clock::now();
    timer.start();
    ASSERT_TRUE(test::waitUntil([&] { return frames >= 90; }));
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    EXPECT_GE(seconds, 1.49);
    EXPECT_LT(seconds, 1.7);
}

TEST(FrameTimer, leavesOutFramesThatWereMissed) {
    int frames = 0;
    FrameTimer timer([&frames] { ++frames; });
    timer.start();
    ASSERT_TRUE(test::waitUntil([&] { return frames >= 3; }));
    std::this_thread::sleep_for(500ms);
    const int before = frames;
    test::turnEventLoopFor(50ms);
    EXPECT_LE(frames - before, 6);
    EXPECT_GE(frames - before, 1);
}

TEST(FrameTimer, isStillAfterStop) {
    int frames = 0;
    FrameTimer timer([&frames] { ++frames; });
    timer.start();
    ASSERT_TRUE(test::waitUntil([&] { return frames >= 1; }));
    timer.stop();
    const int before = frames;
    test::turnEventLoopFor(60ms);
    EXPECT_EQ(frames, before);
    EXPECT_FALSE(timer.isRunning());
}

TEST(FrameTimer, mayBeStoppedWithinAFrame) {
    int frames = 0;
    FrameTimer* running = nullptr;
    FrameTimer timer([&] {
        ++frames;
        running->stop();
    });
    running = &timer;
    timer.start();
    ASSERT_TRUE(test::waitUntil([&] { return frames >= 1; }));
    test::turnEventLoopFor(60ms);
    EXPECT_EQ(frames, 1);
}

}  // namespace
}  // namespace sayloft
