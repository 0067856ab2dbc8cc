// SPDX-License-Identifier: MIT
#include "platform/linux/NotifierFreedesktop.h"

#include "platform/SessionBusConnection.h"
#include "tests/support/BusMonitor.h"
#include "tests/support/NotificationDaemon.h"
#include "tests/support/TempHome.h"
#include "tests/support/VisibleWindows.h"
#include "tests/support/WaitUntil.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <memory>
#include <optional>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::NotificationDaemon;
using test::Notifying;

/// The notifier and a daemon of the desktop, on a bus that starts nothing by itself.
class Daemons : public testing::TestWithParam<Notifying> {
protected:
    Daemons()
        : m_bus(test::SessionBus::Options{.services = m_services.path()}),
          m_connection(m_bus.address()),
          m_notifier(std::in_place, m_connection) {}

    NotificationDaemon& startDaemon() {
        m_daemon = std::make_unique<NotificationDaemon>(GetParam(), m_server, m_bus);
        return *m_daemon;
    }

    void show(const QString& key = QStringLiteral("key")) {
        m_notifier->show({.key = key,
                          .summary = QStringLiteral("No microphone"),
                          .body = QStringLiteral("Plug one in & try <again>."),
                          .actionLabel = QStringLiteral("Settings"),
                          .onActivated = [this] { ++m_activations; }});
    }
    [[nodiscard]] bool appears() const {
        return test::waitUntil([this] { return m_daemon->shows(); });
    }
    [[nodiscard]] bool disappears() const {
        return test::waitUntil([this] { return !m_daemon->shows(); });
    }
    /// Time enough for a notification that must not come.
    [[nodiscard]] bool staysAway() const {
        test::turnEventLoopFor(500ms);
        return !m_daemon->shows();
    }

    test::XServer m_server;
    QTemporaryDir m_services;
    test::SessionBus m_bus;
    SessionBusConnection m_connection;
    std::optional<NotifierFreedesktop> m_notifier;
    std::unique_ptr<NotificationDaemon> m_daemon;
    int m_activations = 0;
};

INSTANTIATE_TEST_SUITE_P(OfDebian, Daemons, testing::Values(Notifying::dunst, Notifying::xfce),
                         [](const auto& row) {
                             return row.param == Notifying::dunst ? "dunst" : "xfce";
                         });

TEST_P(Daemons, showTheWordsAsTheyAreMeant) {
    startDaemon();
    test::BusMonitor monitor(m_bus, QStringLiteral("org.freedesktop.Notifications"));
    show();
    EXPECT_TRUE(appears());
    EXPECT_TRUE(monitor.hears("string \"No microphone\""));
    EXPECT_TRUE(monitor.hears("string \"Plug one in &amp; try &lt;again&gt;.\""));
}

TEST_P(Daemons, takeAWithdrawnNotificationOffTheScreen) {
    startDaemon();
    show();
    ASSERT_TRUE(appears());
    m_notifier->withdraw(QStringLiteral("another"));
    EXPECT_FALSE(test::waitUntil([this] { return !m_daemon->shows(); }, 300ms));
    m_notifier->withdraw(QStringLiteral("key"));
    EXPECT_TRUE(disappears());
}

TEST_P(Daemons, showNothingThatIsWithdrawnAtOnce) {
    startDaemon();
    show();
    m_notifier->withdraw(QStringLiteral("key"));
    EXPECT_TRUE(staysAway());
}

TEST_P(Daemons, tellWhenTheUserClicks) {
    startDaemon();
    show();
    ASSERT_TRUE(appears());
    m_daemon->click();
    EXPECT_TRUE(test::waitUntil([this] { return m_activations == 1; }));
}

TEST_P(Daemons, showNothingAfterTheNotifierHasGone) {
    startDaemon();
    show();
    ASSERT_TRUE(appears());
    // The daemon has said its number by then.
    test::turnEventLoopFor(200ms);
    m_notifier.reset();
    EXPECT_TRUE(disappears());
}

TEST_P(Daemons, thatAppearLaterShowWhatStillHolds) {
    show(QStringLiteral("gone by then"));
    show();
    test::turnEventLoopFor(100ms);
    m_notifier->withdraw(QStringLiteral("gone by then"));
    startDaemon();
    ASSERT_TRUE(appears());
    m_notifier->withdraw(QStringLiteral("key"));
    EXPECT_TRUE(disappears());
}

TEST_P(Daemons, thatCrashAreFollowedByTheNextWithoutShowingTwice) {
    startDaemon();
    show(QStringLiteral("seen"));
    ASSERT_TRUE(appears());
    m_daemon->kill();
    startDaemon();
    EXPECT_TRUE(staysAway());
    show(QStringLiteral("new"));
    EXPECT_TRUE(appears());
    m_notifier->withdraw(QStringLiteral("seen"));
    m_notifier->withdraw(QStringLiteral("new"));
    EXPECT_TRUE(disappears());
}

TEST_P(Daemons, thatCrashLoseNothingThatTheyHaveNotShown) {
    startDaemon().program().signal(SIGSTOP);
    show();
    test::turnEventLoopFor(100ms);
    m_daemon->kill();
    startDaemon();
    EXPECT_TRUE(appears());
}

TEST_P(Daemons, thatHangNeverHoldUsUpAndShowWhatHoldsWhenTheyGoOn) {
    startDaemon().program().signal(SIGSTOP);
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i)
        show(QStringLiteral("key"));
    show(QStringLiteral("withdrawn"));
    m_notifier->withdraw(QStringLiteral("withdrawn"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 100ms);
    test::turnEventLoopFor(200ms);
    m_daemon->program().signal(SIGCONT);
    ASSERT_TRUE(appears());
    m_notifier->withdraw(QStringLiteral("key"));
    EXPECT_TRUE(disappears());
}

TEST_P(Daemons, thatTheBusStartsShowToo) {
    QProcessEnvironment environment = m_server.environment();
    const QTemporaryDir home;
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.path());
    environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
    test::writeFile(m_services.filePath(QStringLiteral("notifications.service")),
                    "[D-BUS Service]\nName=org.freedesktop.Notifications\nExec=" +
                        QStandardPaths::findExecutable(test::programOf(GetParam())).toLocal8Bit() +
                        "\n");
    const test::SessionBus bus(
        test::SessionBus::Options{.services = m_services.path(), .environment = environment});
    SessionBusConnection connection(bus.address());
    NotifierFreedesktop notifier(connection);
    notifier.show({.key = QStringLiteral("key"),
                   .summary = QStringLiteral("No microphone"),
                   .body = QStringLiteral("Plug one in.")});
    EXPECT_TRUE(test::waitUntil(
        [this] {
            return !test::visibleWindows(m_server, QString::fromLatin1(nameOf(GetParam())))
                        .isEmpty();
        },
        20s));
}

}  // namespace
}  // namespace sayloft
