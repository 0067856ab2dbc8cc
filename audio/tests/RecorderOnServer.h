// SPDX-License-Identifier: MIT
#pragma once

#include "audio/Recorder.h"
#include "platform/linux/AudioInputPulse.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WatchedAudioInput.h"
#include "tests/support/Waveform.h"

#include <QTemporaryDir>

#include <chrono>

#include <gtest/gtest.h>

namespace sayloft::test {

/// The recorder with a real sound server, in whose room the tests speak. Without boost, so that
/// what is said and what is in the file are the same.
class RecorderOnServer : public testing::Test {
protected:
    using Clock = std::chrono::steady_clock;

    explicit RecorderOnServer(RoomFormat room = {});

    [[nodiscard]] QString file(const QString& name) const { return m_directory.filePath(name); }
    /// A WAV file of these samples after a tenth of a second of silence.
    [[nodiscard]] QString soundFile(const Samples& samples) const;
    [[nodiscard]] bool appears(const QString& uid) const;
    void plugInUsb();

    /// Starts recording and returns once it has recorded about as long as it is told.
    void record(std::chrono::milliseconds length);
    /// What the recording that ends now has in its file; empty when there is none.
    [[nodiscard]] Samples stopAndRead();
    /// How long a call keeps the main thread.
    template <typename Call>
    [[nodiscard]] static std::chrono::microseconds duration(const Call& call) {
        const auto begin = Clock::now();
        call();
        return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    }
    /// Speaks into the next recording and compares.
    void expectNextDictationWorks();

    TempHome home;
    SoundServer server;
    WatchedAudioInput input;
    Recorder recorder{input};
    const QString builtin = QStringLiteral("builtin");
    const QString usb = QStringLiteral("usb");

private:
    QTemporaryDir m_directory;
};

}  // namespace sayloft::test
