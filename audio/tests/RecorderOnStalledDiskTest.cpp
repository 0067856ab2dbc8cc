// SPDX-License-Identifier: MIT
#include "audio/tests/RecorderOnServer.h"
#include "audio/tests/StalledFile.h"

#include <optional>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t rate = 16000;
constexpr auto frame = 16ms;  // of a screen at 60 Hz

class TheRecorderOnAStalledDisk : public RecorderOnServer {
protected:
    /// Records, and returns when the disk holds up what writes the file.
    void recordIntoStall() {
        record(100ms);
        stall.emplace(recorder.wavURL());
        ASSERT_TRUE(waitUntil([this] { return stall->holdsUpAWriter(); }));
    }

    std::optional<StalledFile> stall;
};

TEST_F(TheRecorderOnAStalledDisk, keepsEveryWordUntilTheDiskTakesIt) {
    const Samples said = noise(3 * rate);
    ASSERT_NO_FATAL_FAILURE(recordIntoStall());
    server.play(soundFile(said));
    const std::shared_ptr<Recording> recording = recorder.stop();
    stall.reset();
    EXPECT_EQ(find(said, readSound(recording->waitUntilFinished())).equal, said.size());
}

TEST_F(TheRecorderOnAStalledDisk, stillHearsTheMicrophone) {
    ASSERT_NO_FATAL_FAILURE(recordIntoStall());
    const QString path = soundFile(noise(3 * rate));
    const ChildProgram speaker = server.startPlaying(path);
    EXPECT_TRUE(waitUntil([this] { return recorder.level() > 0.6; }, 3s));
    stall.reset();
    static_cast<void>(recorder.stop());
}

TEST_F(TheRecorderOnAStalledDisk, endsAndBeginsRecordingsWithoutKeepingTheMainThread) {
    ASSERT_NO_FATAL_FAILURE(recordIntoStall());
    std::shared_ptr<Recording> first;
    EXPECT_LT(duration([&] { first = recorder.stop(); }), frame);
    EXPECT_LT(duration([&] { recorder.start(); }), frame);
    EXPECT_LT(duration([&] { static_cast<void>(recorder.stop()); }), frame);
    stall.reset();
}

TEST_F(TheRecorderOnAStalledDisk, leavesTheFileToTheRecordingThatStillWaits) {
    ASSERT_NO_FATAL_FAILURE(recordIntoStall());
    static_cast<void>(recorder.stop());  // nobody wants it any more
    const Samples said = noise(rate);
    recorder.start();
    server.play(soundFile(said));
    const std::shared_ptr<Recording> second = recorder.stop();
    EXPECT_NE(second->path(), recorder.wavURL());
    stall.reset();
    EXPECT_EQ(find(said, readSound(second->waitUntilFinished())).equal, said.size());
}

}  // namespace
}  // namespace sayloft::test
