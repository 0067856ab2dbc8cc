// SPDX-License-Identifier: MIT
#include "platform/linux/AudioInputPulse.h"

#include "tests/support/SoundServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace sayloft {
namespace {

using test::waitUntil;
using Authorization = AudioInput::Authorization;

/// A server that lets in only who has its cookie, which we have not.
class AudioInputPulseRefused : public testing::Test {
protected:
    AudioInputPulseRefused() : m_serverBefore(qgetenv("PULSE_SERVER")) {
        m_server.openGuardedDoor(14713, m_theirs);
        qputenv("PULSE_SERVER", "tcp:127.0.0.1:14713");
        qputenv("PULSE_COOKIE", m_ours.toLocal8Bit());
        m_input.emplace();
    }
    ~AudioInputPulseRefused() override {
        m_input.reset();
        qunsetenv("PULSE_COOKIE");
        qputenv("PULSE_SERVER", m_serverBefore);
    }

    [[nodiscard]] bool becomes(Authorization status) const {
        return waitUntil([&] { return m_input->authorization() == status; });
    }
    [[nodiscard]] std::optional<bool> answerToARequest() {
        std::optional<bool> granted;
        m_input->requestAccess([&granted](bool answer) { granted = answer; });
        static_cast<void>(waitUntil([&granted] { return granted.has_value(); }));
        return granted;
    }

    QTemporaryDir m_cookies;
    const QString m_theirs = m_cookies.filePath(QStringLiteral("theirs"));
    const QString m_ours = m_cookies.filePath(QStringLiteral("ours"));
    test::SoundServer m_server;
    QByteArray m_serverBefore;
    std::optional<AudioInputPulse> m_input;
};

TEST_F(AudioInputPulseRefused, isDeniedAccess) {
    EXPECT_TRUE(becomes(Authorization::denied));
    EXPECT_EQ(answerToARequest(), false);
    EXPECT_TRUE(m_input->devices().empty());
    EXPECT_FALSE(m_input->startCapture({.device = {}, .onBuffer = {}, .onEnd = {}}).capture);
}

TEST_F(AudioInputPulseRefused, isLetInOnceItHasTheCookie) {
    ASSERT_TRUE(becomes(Authorization::denied));
    test::writeFile(m_ours, test::readFile(m_theirs));
    EXPECT_TRUE(becomes(Authorization::authorized));
    EXPECT_EQ(answerToARequest(), true);
    EXPECT_TRUE(waitUntil([this] { return m_input->devices().size() == 2; }));
}

TEST_F(AudioInputPulseRefused, waitsForAnAnswerAgainWhenTheServerHasGone) {
    ASSERT_TRUE(becomes(Authorization::denied));
    m_server.kill();
    EXPECT_TRUE(becomes(Authorization::notDetermined));
    EXPECT_EQ(answerToARequest(), false);
}

TEST(AudioInputAuthorization, hasTheNumbersThatItsReadersKnow) {
    EXPECT_EQ(static_cast<int>(Authorization::notDetermined), 0);
    EXPECT_EQ(static_cast<int>(Authorization::restricted), 1);
    EXPECT_EQ(static_cast<int>(Authorization::denied), 2);
    EXPECT_EQ(static_cast<int>(Authorization::authorized), 3);
}

}  // namespace
}  // namespace sayloft
