// SPDX-License-Identifier: MIT
#include "platform/linux/SystemSoundsPulse.h"

#include "platform/linux/AudioInputPulse.h"
#include "platform/tests/CapturedSound.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaitUntil.h"

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

TEST_F(ASystemSound, neverBlocks) {
    ASSERT_TRUE(isHeard(QStringLiteral("Pop")));
    server.freeze();
    const auto begin = std::chrono::steady_clock::now();
    sounds.play(QStringLiteral("Pop"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20ms);
    server.thaw();
}
