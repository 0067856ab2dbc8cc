// SPDX-License-Identifier: MIT
#include "platform/SessionBusConnection.h"

#include "tests/support/SessionBus.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class ASessionBusConnection : public testing::Test {
protected:
    ASessionBusConnection() {
        QObject::connect(&m_connection, &SessionBusConnection::lost, [this] { ++m_losses; });
        QObject::connect(&m_connection, &SessionBusConnection::restored,
                         [this] { ++m_restorations; });
    }

    [[nodiscard]] bool isLost(int times) const {
        return test::waitUntil([&] { return m_losses == times; });
    }
    [[nodiscard]] bool isRestored(int times) const {
        return test::waitUntil([&] { return m_restorations == times; });
    }

    test::SessionBus m_bus;
    SessionBusConnection m_connection{m_bus.address()};
    int m_losses = 0;
    int m_restorations = 0;
};

TEST_F(ASessionBusConnection, isThereAtOnce) {
    ASSERT_TRUE(m_connection.bus());
    EXPECT_TRUE(m_connection.bus()->isConnected());
}

TEST_F(ASessionBusConnection, hasNoBusWhileThereIsNone) {
    m_bus.kill();
    ASSERT_TRUE(isLost(1));
    EXPECT_FALSE(m_connection.bus());
}

TEST_F(ASessionBusConnection, comesBackWithEveryBusThatTakesThePlace) {
    for (int restart = 1; restart <= 3; ++restart) {
        m_bus.kill();
        ASSERT_TRUE(isLost(restart));
        m_bus.restart();
        ASSERT_TRUE(isRestored(restart));
        ASSERT_TRUE(m_connection.bus());
        EXPECT_TRUE(m_connection.bus()->isConnected());
    }
}

TEST_F(ASessionBusConnection, waitsLongForTheNextBus) {
    m_bus.kill();
    ASSERT_TRUE(isLost(1));
    test::turnEventLoopFor(2s);
    EXPECT_EQ(m_restorations, 0);
    m_bus.restart();
    EXPECT_TRUE(isRestored(1));
}

TEST_F(ASessionBusConnection, doesNotBlockOnANextBusThatDoesNotAnswer) {
    m_bus.kill();
    ASSERT_TRUE(isLost(1));
    m_bus.restart();
    m_bus.program().signal(SIGSTOP);
    auto longest = 0ms;
    auto last = std::chrono::steady_clock::now();
    EXPECT_FALSE(test::waitUntil(
        [&] {
            const auto now = std::chrono::steady_clock::now();
            longest = std::max(longest,
                               std::chrono::duration_cast<std::chrono::milliseconds>(now - last));
            last = now;
            return m_restorations > 0;
        },
        1s));
    EXPECT_LT(longest, 200ms);
    m_bus.program().signal(SIGCONT);
    EXPECT_TRUE(isRestored(1));
}

TEST(ASessionBusConnectionWithoutABus, hasNone) {
    EXPECT_FALSE(SessionBusConnection(std::nullopt).bus());
    EXPECT_FALSE(SessionBusConnection(QStringLiteral("unix:path=/nonexistent")).bus());
    EXPECT_FALSE(SessionBusConnection(QStringLiteral("no address")).bus());
}

}  // namespace
}  // namespace sayloft
