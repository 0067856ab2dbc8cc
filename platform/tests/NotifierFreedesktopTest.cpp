// SPDX-License-Identifier: MIT
#include "platform/linux/NotifierFreedesktop.h"

#include "platform/SessionBusConnection.h"
#include "platform/tests/ScriptedNotificationDaemon.h"
#include "tests/support/SessionBus.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <optional>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

// The arguments of Notify.
constexpr int bodyArgument = 4;
constexpr int actionsArgument = 5;

class NotifierFreedesktopTest : public testing::Test {
protected:
    NotifierFreedesktopTest()
        : m_bus(test::SessionBus::Options{.services = m_services.path()}),
          m_connection(m_bus.address()),
          m_notifier(std::in_place, m_connection) {}

    ScriptedNotificationDaemon& startDaemon() {
        m_daemon = std::make_unique<ScriptedNotificationDaemon>(m_bus);
        return *m_daemon;
    }

    void show(const QString& key, const QString& body = QStringLiteral("body")) {
        m_notifier->show({.key = key,
                          .summary = QStringLiteral("summary"),
                          .body = body,
                          .actionLabel = QStringLiteral("Open"),
                          .onActivated = [this, key] { m_activated.push_back(key); }});
    }
    [[nodiscard]] bool isNotified(std::size_t times = 1) const {
        return test::waitUntil([&] { return m_daemon->notified.size() == times; });
    }
    [[nodiscard]] bool isClosed(uint id) const {
        return test::waitUntil([&] { return m_daemon->closed == std::vector<uint>{id}; });
    }
    /// Whatever has been sent so far has been answered afterwards.
    static void settle() { test::turnEventLoopFor(100ms); }

    const QString a = QStringLiteral("a");
    const QString b = QStringLiteral("b");
    QTemporaryDir m_services;
    test::SessionBus m_bus;
    SessionBusConnection m_connection;
    std::unique_ptr<ScriptedNotificationDaemon> m_daemon;
    std::vector<QString> m_activated;
    std::optional<NotifierFreedesktop> m_notifier;
};

TEST_F(NotifierFreedesktopTest, leavesTheBodyAsItIsForADaemonWithoutMarkup) {
    startDaemon();
    show(a, QStringLiteral("1 < 2 & 3"));
    ASSERT_TRUE(isNotified());
    EXPECT_EQ(m_daemon->argument(0, bodyArgument), QStringLiteral("1 < 2 & 3"));
}

TEST_F(NotifierFreedesktopTest, escapesTheBodyForADaemonWithMarkup) {
    startDaemon().capabilities.push_back(QStringLiteral("body-markup"));
    show(a, QStringLiteral("1 < 2 & 3"));
    ASSERT_TRUE(isNotified());
    EXPECT_EQ(m_daemon->argument(0, bodyArgument), QStringLiteral("1 &lt; 2 &amp; 3"));
}

TEST_F(NotifierFreedesktopTest, offersAnActionOnlyToADaemonThatHasActions) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    EXPECT_EQ(m_daemon->argument(0, actionsArgument).toStringList(),
              (QStringList{QStringLiteral("default"), QStringLiteral("Open")}));
    m_daemon->capabilities = QStringList{QStringLiteral("body")};
    show(b);
    ASSERT_TRUE(isNotified(2));
    EXPECT_TRUE(m_daemon->argument(1, actionsArgument).toStringList().isEmpty());
}

TEST_F(NotifierFreedesktopTest, offersNoActionWhereThereIsNone) {
    startDaemon();
    m_notifier->show({.key = a, .summary = QStringLiteral("summary"), .body = {}});
    ASSERT_TRUE(isNotified());
    EXPECT_TRUE(m_daemon->argument(0, actionsArgument).toStringList().isEmpty());
}

TEST_F(NotifierFreedesktopTest, replacesTheOneWithTheSameKey) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    settle();
    show(a);
    ASSERT_TRUE(isNotified(2));
    EXPECT_TRUE(isClosed(1));
}

TEST_F(NotifierFreedesktopTest, closesWhatWasWithdrawnBeforeItHadANumber) {
    startDaemon().holdsAnswersBack = true;
    show(a);
    ASSERT_TRUE(isNotified());
    m_notifier->withdraw(a);
    settle();
    EXPECT_THAT(m_daemon->closed, IsEmpty());
    m_daemon->answer(0);
    EXPECT_TRUE(isClosed(1));
}

TEST_F(NotifierFreedesktopTest, closesTheEarlierOfTwoWithTheSameKeyThatAreUnderWay) {
    startDaemon().holdsAnswersBack = true;
    show(a);
    ASSERT_TRUE(isNotified());
    show(a);
    ASSERT_TRUE(isNotified(2));
    m_daemon->answer(1);
    m_daemon->answer(0);
    EXPECT_TRUE(isClosed(1));
}

TEST_F(NotifierFreedesktopTest, runsTheActionOfTheClickedOne) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    show(b);
    ASSERT_TRUE(isNotified(2));
    m_daemon->emitSignal(QStringLiteral("ActionInvoked"), {2U, QStringLiteral("another")});
    m_daemon->emitSignal(QStringLiteral("ActionInvoked"), {7U, QStringLiteral("default")});
    m_daemon->emitSignal(QStringLiteral("ActionInvoked"), {2U, QStringLiteral("default")});
    ASSERT_TRUE(test::waitUntil([this] { return !m_activated.empty(); }));
    EXPECT_THAT(m_activated, ElementsAre(b));
}

TEST_F(NotifierFreedesktopTest, runsAnActionThatWithdrawsItsOwnNotification) {
    startDaemon();
    m_notifier->show({.key = a,
                      .summary = QStringLiteral("summary"),
                      .body = {},
                      .actionLabel = QStringLiteral("Open"),
                      .onActivated = [this, key = a] {
                          m_notifier->withdraw(key);
                          m_activated.push_back(key);
                      }});
    ASSERT_TRUE(isNotified());
    m_daemon->emitSignal(QStringLiteral("ActionInvoked"), {1U, QStringLiteral("default")});
    EXPECT_TRUE(isClosed(1));
    EXPECT_THAT(m_activated, ElementsAre(a));
}

TEST_F(NotifierFreedesktopTest, doesNotCloseWhatTheUserHasClosed) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    constexpr uint dismissedByTheUser = 2;
    m_daemon->emitSignal(QStringLiteral("NotificationClosed"), {1U, dismissedByTheUser});
    settle();
    m_notifier->withdraw(a);
    settle();
    EXPECT_THAT(m_daemon->closed, IsEmpty());
}

// Numbers mean something to the daemon alone that gave them.
TEST_F(NotifierFreedesktopTest, closesNothingOfTheNextDaemon) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    settle();
    m_daemon.reset();
    startDaemon();
    show(b);
    ASSERT_TRUE(isNotified());
    settle();
    m_notifier->withdraw(a);
    m_daemon->emitSignal(QStringLiteral("ActionInvoked"), {1U, QStringLiteral("default")});
    ASSERT_TRUE(test::waitUntil([this] { return !m_activated.empty(); }));
    EXPECT_THAT(m_activated, ElementsAre(b));
    EXPECT_THAT(m_daemon->closed, IsEmpty());
}

TEST_F(NotifierFreedesktopTest, triesAgainAtTheNextDaemonButNotForEver) {
    int shown = 0;
    for (int daemon = 0; daemon < 5; ++daemon) {
        startDaemon().refuses = true;
        if (daemon == 0)
            show(a);
        settle();
        shown += static_cast<int>(m_daemon->notified.size());
        m_daemon.reset();
    }
    EXPECT_EQ(shown, 3);
}

TEST_F(NotifierFreedesktopTest, doesNotWaitForABusThatHangs) {
    startDaemon();
    m_bus.program().signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    show(a);
    show(b);
    m_notifier->withdraw(a);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 50ms);
    m_bus.program().signal(SIGCONT);
    EXPECT_TRUE(isNotified());
}

TEST_F(NotifierFreedesktopTest, isSilentWhenTheBusHasGone) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    m_bus.program().end();
    show(b);
    m_notifier->withdraw(a);
    m_notifier->withdraw(b);
    settle();
    EXPECT_EQ(m_daemon->notified.size(), 1U);
}

TEST_F(NotifierFreedesktopTest, showsOnTheNextBusWhatTheUserHasNotSeen) {
    startDaemon();
    show(a);
    ASSERT_TRUE(isNotified());
    settle();
    m_daemon.reset();
    m_bus.kill();
    ASSERT_TRUE(test::waitUntil([this] { return !m_connection.bus(); }));
    show(b);
    m_bus.restart();
    startDaemon();
    EXPECT_TRUE(isNotified());
    settle();
    EXPECT_EQ(m_daemon->notified.size(), 1U);
    m_daemon->emitSignal(QStringLiteral("ActionInvoked"), {1U, QStringLiteral("default")});
    EXPECT_TRUE(test::waitUntil([this] { return !m_activated.empty(); }));
    EXPECT_THAT(m_activated, ElementsAre(b));
}

TEST(NotifierFreedesktopWithoutABus, isSilent) {
    SessionBusConnection none(std::nullopt);
    NotifierFreedesktop notifier(none);
    bool activated = false;
    notifier.show({.key = QStringLiteral("a"),
                   .summary = QStringLiteral("summary"),
                   .body = {},
                   .actionLabel = QStringLiteral("Open"),
                   .onActivated = [&activated] { activated = true; }});
    notifier.withdraw(QStringLiteral("a"));
    test::turnEventLoopFor(20ms);
    EXPECT_FALSE(activated);
}

}  // namespace
}  // namespace sayloft
