// SPDX-License-Identifier: MIT
#include "platform/linux/SystemSoundsPulse.h"

#include "platform/linux/AudioInputPulse.h"
#include "platform/tests/CapturedSound.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/SoundOnset.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaitUntil.h"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

using namespace sayloft;
using namespace sayloft::test;
using namespace std::chrono_literals;

class ASystemSound : public testing::Test {
protected:
    /// Whether the sound is heard in the room within two seconds. It is asked for again and again,
    /// since the sound server may still be taking the sounds in.
    bool isHeard(const QString& name) {
        CapturedSound heard;
        if (!waitUntil([this] { return input.inputFormat(std::nullopt).sampleRate > 0; }, 3s))
            return false;
        const auto capture = input.startCapture(heard.request(std::nullopt, 320)).capture;
        return waitUntil(
            [&] {
                sounds.play(name);
                turnEventLoopFor(200ms);
                return heard.peak() > 0.1F;
            },
            2s);
    }

    SoundServer server;
    AudioInputPulse input;
    SystemSoundsPulse sounds{QStringLiteral(SAYLOFT_SOUNDS_DIR)};
};

TEST_F(ASystemSound, isHeard) {
    EXPECT_TRUE(isHeard(QStringLiteral("Pop")));
    EXPECT_TRUE(isHeard(QStringLiteral("Tink")));
}

TEST_F(ASystemSound, thatIsUnknownIsSilent) {
    EXPECT_FALSE(isHeard(QStringLiteral("Gong")));
}

TEST_F(ASystemSound, isHeardFromTheNextServerToo) {
    server.kill();
    sounds.play(QStringLiteral("Pop"));
    server.restart();
    EXPECT_TRUE(isHeard(QStringLiteral("Pop")));
}

TEST_F(ASystemSound, isHeardAfterOneCallWhichReturnsAtOnce) {
    ASSERT_TRUE(waitUntil(
        [this] { return server.list(QStringLiteral("samples")).contains("sayloft-Pop"); }));
    SoundOnset room(input);
    const auto begin = std::chrono::steady_clock::now();
    sounds.play(QStringLiteral("Pop"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20ms);
    ASSERT_TRUE(waitUntil([&room] { return room.onset().has_value(); }, 2s));
    RecordProperty("heardAfterMs", std::to_string((*room.onset() - begin) / 1ms));
}

TEST_F(ASystemSound, neverBlocks) {
    ASSERT_TRUE(isHeard(QStringLiteral("Pop")));
    server.freeze();
    const auto begin = std::chrono::steady_clock::now();
    sounds.play(QStringLiteral("Pop"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20ms);
    server.thaw();
}

// How long it takes to have the sounds, ask for one and be done with them.
std::chrono::steady_clock::duration timeOfAPlayer() {
    const auto begin = std::chrono::steady_clock::now();
    SystemSoundsPulse(QStringLiteral(SAYLOFT_SOUNDS_DIR)).play(QStringLiteral("Pop"));
    return std::chrono::steady_clock::now() - begin;
}

TEST(ASystemSoundWithoutAServer, isSilenceThatNobodyWaitsFor) {
    qputenv("PULSE_SERVER", "unix:/nonexistent");
    EXPECT_LT(timeOfAPlayer(), 500ms);
}

TEST(ASystemSoundWithoutAServer, isSilenceWhereSomebodyElseListens) {
    const RawHttpServer stranger({RawAnswer::hang()});
    qputenv("PULSE_SERVER", "tcp:127.0.0.1:" + QByteArray::number(stranger.port()));
    EXPECT_LT(timeOfAPlayer(), 500ms);
}

TEST(ASystemSoundWithoutAServer, isSilenceWhileTheServerHangs) {
    SoundServer server;
    server.freeze();
    EXPECT_LT(timeOfAPlayer(), 500ms);
}

TEST(ASystemSoundWithoutAFile, isSilence) {
    const SoundServer server;
    SystemSoundsPulse sounds(QStringLiteral("/nonexistent"));
    EXPECT_NO_THROW(sounds.play(QStringLiteral("Pop")));
}
