// SPDX-License-Identifier: MIT
#include "storage/Permissions.h"

#include "tests/support/FakePlatform.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class PermissionsTest : public testing::Test {
protected:
    test::FakeAudioInput m_audio;
    test::FakePrivacySettings m_privacy;
    Permissions m_permissions{m_audio, m_privacy};
};

struct MicRow {
    const char* name;
    AudioInput::Authorization status;
    bool granted;
    int requests;
};

class MicrophoneStatus : public PermissionsTest, public testing::WithParamInterface<MicRow> {};

TEST_P(MicrophoneStatus, countsAsGrantedOnlyWhenAuthorizedAndIsAskedForOnlyOnce) {
    m_audio.answer = GetParam().status;
    EXPECT_EQ(m_permissions.micGranted(), GetParam().granted);
    m_permissions.requestMicIfNotDetermined();
    EXPECT_EQ(m_audio.accessRequests, GetParam().requests);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, MicrophoneStatus,
    testing::Values(MicRow{"notDetermined", AudioInput::Authorization::notDetermined, false, 1},
                    MicRow{"restricted", AudioInput::Authorization::restricted, false, 0},
                    MicRow{"denied", AudioInput::Authorization::denied, false, 0},
                    MicRow{"authorized", AudioInput::Authorization::authorized, true, 0}),
    [](const auto& row) { return row.param.name; });

TEST_F(PermissionsTest, areAskedAfreshEveryTime) {
    EXPECT_TRUE(m_permissions.accessibilityGranted());
    m_privacy.trusted = false;
    EXPECT_FALSE(m_permissions.accessibilityGranted());
}

TEST_F(PermissionsTest, openThePaneThatTheAnchorNames) {
    m_permissions.openPrivacyPane(QStringLiteral("Privacy_Microphone"));
    ASSERT_EQ(m_privacy.opened.size(), 1U);
    EXPECT_EQ(m_privacy.opened[0],
              QStringLiteral(
                  "x-apple.systempreferences:com.apple.preference.security?Privacy_Microphone"));
}

TEST_F(PermissionsTest, tellWhenTheMicrophoneHasBeenAnswered) {
    m_audio.answer = AudioInput::Authorization::notDetermined;
    m_audio.userSays = AudioInput::Authorization::authorized;
    bool grantedAtTheAnswer = false;
    m_permissions.grantMic([&] { grantedAtTheAnswer = m_permissions.micGranted(); });
    EXPECT_TRUE(grantedAtTheAnswer);
    EXPECT_EQ(m_audio.accessRequests, 1);
    EXPECT_TRUE(m_privacy.opened.empty());
}

TEST_F(PermissionsTest, openThePaneWhereTheMicrophoneWasAnsweredLongAgo) {
    m_audio.answer = AudioInput::Authorization::denied;
    m_permissions.grantMic([] { FAIL() << "there was no question"; });
    EXPECT_EQ(m_audio.accessRequests, 0);
    ASSERT_EQ(m_privacy.opened.size(), 1U);
    EXPECT_TRUE(m_privacy.opened[0].endsWith(QStringLiteral("?Privacy_Microphone")));
}

TEST_F(PermissionsTest, openThePaneWhereNobodyAnswersForTheMicrophone) {
    m_audio.answer = AudioInput::Authorization::notDetermined;
    int answers = 0;
    m_permissions.grantMic([&] { ++answers; });
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(m_audio.accessRequests, 1);
    EXPECT_EQ(m_privacy.opened.size(), 1U);
}

TEST_F(PermissionsTest, openNothingForAnAnchorThatMakesNoAddress) {
    m_permissions.openPrivacyPane(QStringLiteral("not an anchor %zz"));
    EXPECT_TRUE(m_privacy.opened.empty());
}

}  // namespace
}  // namespace sayloft
