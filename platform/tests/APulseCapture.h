// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AudioInputPulse.h"
#include "platform/tests/CapturedSound.h"
#include "platform/tests/NumberedFrames.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

/// Captures from a sound server in whose room the tests speak.
class APulseCapture : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;

    static constexpr std::size_t rate = 16000;

    APulseCapture() {
        writeWav(m_numbered, numberedFrames(), rate);
        m_ready = waitUntil([this] { return find(builtin).has_value(); });
    }

    [[nodiscard]] static std::chrono::milliseconds since(Clock::time_point begin) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin);
    }

    [[nodiscard]] std::optional<AudioDeviceId> find(const QString& uid) const {
        for (const AudioDeviceId id : input.devices()) {
            if (input.uid(id) == uid)
                return id;
        }
        return std::nullopt;
    }

    void plugInUsb() {
        server.addMicrophone(usb, {{QStringLiteral("device.bus"), QStringLiteral("usb")}});
        ASSERT_TRUE(waitUntil([this] { return find(usb).has_value(); }));
    }

    /// Starts a capture and waits until it delivers.
    [[nodiscard]] std::unique_ptr<AudioCapture> startFlowing(
        std::optional<AudioDeviceId> device = std::nullopt) {
        EXPECT_TRUE(m_ready);
        AudioCaptureResult result = input.startCapture(sound.request(device, 320));
        EXPECT_EQ(result.error, QString());
        EXPECT_TRUE(sound.waitForFrames(1));
        return std::move(result.capture);
    }

    /// Whether all of the numbered frames were captured, each once and in order.
    void expectEveryNumber() const {
        std::vector<int> numbers = numbersIn(sound.samples());
        ASSERT_GE(numbers.size(), std::size_t{lastNumber});
        numbers.resize(lastNumber);
        EXPECT_EQ(numbers.front(), 1);
        EXPECT_TRUE(areConsecutive(numbers));
    }

    void expectNextCaptureWorks() {
        sound.clear();
        const auto capture = startFlowing();
        ASSERT_TRUE(capture);
        capture->finish();
        EXPECT_TRUE(sound.waitForEnd(std::chrono::seconds(1)));
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

}  // namespace sayloft::test
