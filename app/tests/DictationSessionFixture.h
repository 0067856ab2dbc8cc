// SPDX-License-Identifier: MIT
#pragma once

#include "app/DictationSession.h"
#include "audio/Recorder.h"
#include "speech/Paster.h"
#include "speech/Transcriber.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/FakeUserInterface.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

constexpr Mods shiftCmd{Mods::shift, Mods::cmd};

/// What the controller is to a session.
class FakeHost : public DictationHost {
public:
    void setState(IconState state) override { m_item.setState(state); }
    void buildMenu() override { m_item.buildMenu(); }
    [[nodiscard]] Overlay* dictationOverlay() override { return &m_overlay; }
    [[nodiscard]] bool accessibilityTrusted() const override { return trusted; }
    [[nodiscard]] bool serverReady() const override { return ready; }

    void dictationEnded() override { ++ended; }

    Seen seen;
    int ended = 0;
    bool trusted = true;
    bool ready = true;

private:
    FakeStatusItem m_item{seen};
    FakeOverlay m_overlay{seen};
};

/// A session on fake hardware and a real connection to a speech server that answers from a script.
class DictationSessionFixture : public testing::Test {
protected:
    /// The server's answers, one for each request.
    void answer(std::vector<RawAnswer> script) {
        m_server = std::make_unique<RawHttpServer>(std::move(script));
        m_transcriber =
            Transcriber(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(m_server->port())),
                        {.attempts = 4,
                         .pause = std::chrono::milliseconds(20),
                         .timeout = std::chrono::seconds(10)});
    }

    void answerText(const QByteArray& text) { answer({RawAnswer::ok(text)}); }

    /// Holds the chord for `seconds` by the session's clock.
    void dictate(double seconds = 2, bool enter = false) {
        m_session.beginRecording(enter, shiftCmd);
        m_now += std::chrono::milliseconds(static_cast<int>(seconds * 1000));
        m_session.endRecording();
    }

    /// Waits for what the session does last of all.
    [[nodiscard]] bool waitFor(const char* word) {
        return waitUntil([&] { return count(word) > 0; });
    }

    [[nodiscard]] long count(const char* word) const {
        return std::count(m_host.seen.begin(), m_host.seen.end(), word);
    }

    TempHome m_home;
    FakePlatform m_fakes;
    Platform m_platform = m_fakes.platform();
    Config m_cfg;
    Recorder m_recorder{m_fakes.audio};
    Transcriber m_transcriber;
    Paster m_paster{m_fakes.clipboard, m_fakes.keyPoster};
    History m_history;
    FakeHost m_host;
    std::unique_ptr<RawHttpServer> m_server;
    DictationSession::Clock::time_point m_now;
    DictationSession m_session{{.cfg = m_cfg,
                                .recorder = m_recorder,
                                .transcriber = m_transcriber,
                                .paster = m_paster,
                                .history = m_history,
                                .sounds = m_fakes.sounds},
                               m_host,
                               [this] { return m_now; }};
};

}  // namespace sayloft::test
