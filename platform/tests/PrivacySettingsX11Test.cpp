// SPDX-License-Identifier: MIT
#include "platform/linux/PrivacySettingsX11.h"

#include "tests/support/RestartableXServer.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>
#include <xcb/res.h>

#include <chrono>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

/// How many programs are connected to the server, this question aside.
std::uint32_t clients() {
    const XcbConnection connection = connectToXServer();
    const XcbOwned<xcb_res_query_clients_reply_t> reply(xcb_res_query_clients_reply(
        connection.get(), xcb_res_query_clients(connection.get()), nullptr));
    return reply ? reply->num_clients - 1 : 0;
}

class AccessibilityTrust : public testing::Test {
protected:
    PrivacySettingsX11 m_settings{QString()};
};

TEST_F(AccessibilityTrust, isThereOnAnOrdinaryServer) {
    const test::XServer server;
    EXPECT_TRUE(m_settings.accessibilityTrusted());
}

TEST_F(AccessibilityTrust, isMissingWithoutTheExtensionThatTypesKeys) {
    const test::XServer server(test::XServer::Options{
        .arguments = {QStringLiteral("-extension"), QStringLiteral("XTEST")}});
    EXPECT_FALSE(m_settings.accessibilityTrusted());
    EXPECT_FALSE(m_settings.accessibilityTrusted());
}

TEST_F(AccessibilityTrust, isMissingWithoutAServer) {
    qputenv("DISPLAY", ":60001");
    EXPECT_FALSE(m_settings.accessibilityTrusted());
}

TEST_F(AccessibilityTrust, isAskedOverOneConnection) {
    const test::XServer server;
    const std::uint32_t before = clients();
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(m_settings.accessibilityTrusted());
    EXPECT_EQ(clients(), before + 1);
}

TEST_F(AccessibilityTrust, goesWithTheServerAndComesBackWithTheNext) {
    test::RestartableXServer server;
    EXPECT_TRUE(m_settings.accessibilityTrusted());
    server.kill();
    EXPECT_FALSE(m_settings.accessibilityTrusted());
    EXPECT_FALSE(m_settings.accessibilityTrusted());
    server.startAgain();
    EXPECT_TRUE(m_settings.accessibilityTrusted());
}

TEST_F(AccessibilityTrust, isThereAtTheNextServerAlsoWhenNobodyAskedInBetween) {
    test::RestartableXServer server;
    EXPECT_TRUE(m_settings.accessibilityTrusted());
    server.kill();
    server.startAgain();
    EXPECT_TRUE(m_settings.accessibilityTrusted());
}

TEST_F(AccessibilityTrust, isAnsweredWhateverTheServerHasSentInTheMeantime) {
    const test::XServer server;
    EXPECT_TRUE(m_settings.accessibilityTrusted());
    test::TestKeyboard keyboard;
    for (const char* layout : {"de", "fr", "us"})
        keyboard.setLayouts(QString::fromLatin1(layout));
    EXPECT_TRUE(m_settings.accessibilityTrusted());
}

}  // namespace
}  // namespace sayloft
