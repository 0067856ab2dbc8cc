// SPDX-License-Identifier: MIT
#include "tests/support/BusMonitor.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class SingleInstanceOfTheProgram : public testing::Test {
protected:
    SingleInstanceOfTheProgram() {
        QDir().mkpath(home());
        m_environment = m_server.environment();
        m_environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        m_environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    }

    [[nodiscard]] QString home() const { return m_directory.filePath(QStringLiteral("home")); }

    std::unique_ptr<test::SayloftProgram> startAnother() {
        return std::make_unique<test::SayloftProgram>(home(), m_environment);
    }

    void expectThatASecondStartEndsAtOnce() {
        const auto first = startAnother();
        ASSERT_TRUE(first->waitForLog(QStringLiteral("event tap installed OK")));
        const auto second = startAnother();
        ASSERT_TRUE(second->program().waitForEnd(10s));
        EXPECT_EQ(second->program().exitCode(), 0);
        EXPECT_TRUE(first->program().isRunning());
    }

    test::XServer m_server;
    QTemporaryDir m_directory;
    QProcessEnvironment m_environment;
};

class WithASessionBus : public SingleInstanceOfTheProgram {
protected:
    WithASessionBus() { m_bus.addTo(m_environment); }

    void expectThatASecondStartActivatesTheFirst() {
        test::BusMonitor monitor(m_bus, QStringLiteral("org.freedesktop.Application"));
        const auto second = startAnother();
        EXPECT_TRUE(monitor.hears("member=Activate"));
        EXPECT_TRUE(second->program().waitForEnd(10s));
    }

    test::SessionBus m_bus;
};

class WithoutASessionBus : public SingleInstanceOfTheProgram {};

TEST_F(WithASessionBus, aSecondStartEndsAtOnceAndTheFirstStays) {
    expectThatASecondStartEndsAtOnce();
}

TEST_F(WithASessionBus, aSecondStartActivatesTheFirst) {
    const auto first = startAnother();
    ASSERT_TRUE(first->waitForLog(QStringLiteral("event tap installed OK")));
    expectThatASecondStartActivatesTheFirst();
    EXPECT_TRUE(first->program().isRunning());
}

TEST_F(WithASessionBus, aSecondStartActivatesTheFirstOnTheNextBusToo) {
    const auto first = startAnother();
    ASSERT_TRUE(first->waitForLog(QStringLiteral("event tap installed OK")));
    m_bus.kill();
    m_bus.restart();
    m_bus.addTo(m_environment);
    ASSERT_NO_THROW(static_cast<void>(test::TrayClient(m_bus).sayloft()));
    expectThatASecondStartActivatesTheFirst();
    EXPECT_TRUE(first->program().isRunning());
}

TEST_F(WithASessionBus, aUserWithAnotherHomeHasACopyOfHisOwn) {
    const auto first = startAnother();
    ASSERT_TRUE(first->waitForLog(QStringLiteral("event tap installed OK")));
    const QString otherHome = m_directory.filePath(QStringLiteral("other"));
    QDir().mkpath(otherHome);
    test::SayloftProgram other(otherHome, m_environment);
    EXPECT_TRUE(other.waitForLog(QStringLiteral("event tap installed OK")));
    EXPECT_TRUE(first->program().isRunning());
}

TEST_F(WithASessionBus, aStartOutsideTheBusFindsTheFirstToo) {
    const auto first = startAnother();
    ASSERT_TRUE(first->waitForLog(QStringLiteral("event tap installed OK")));
    m_environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    const auto second = startAnother();
    EXPECT_TRUE(second->program().waitForEnd(10s));
    EXPECT_TRUE(first->program().isRunning());
}

TEST_F(WithASessionBus, aNewStartWorksOnceTheFirstHasEnded) {
    {
        const auto first = startAnother();
        ASSERT_TRUE(first->waitForLog(QStringLiteral("event tap installed OK")));
    }
    const auto second = startAnother();
    EXPECT_TRUE(test::waitUntil(
        [&] { return second->log().count(QStringLiteral("event tap installed OK")) == 2; }));
    EXPECT_TRUE(second->program().isRunning());
}

TEST_F(WithoutASessionBus, aSecondStartEndsAtOnceAndTheFirstStays) {
    expectThatASecondStartEndsAtOnce();
}

TEST_F(WithoutASessionBus, aLockThatADeadProcessLeftBehindDoesNotBlock) {
    {
        const auto killed = startAnother();
        ASSERT_TRUE(killed->waitForLog(QStringLiteral("event tap installed OK")));
        killed->program().signal(SIGKILL);
        ASSERT_TRUE(killed->program().waitForEnd(5s));
    }
    ASSERT_TRUE(QFile::exists(home() + QStringLiteral("/.sayloft/sayloft.lock")));
    const auto second = startAnother();
    EXPECT_TRUE(test::waitUntil(
        [&] { return second->log().count(QStringLiteral("event tap installed OK")) == 2; }));
}

TEST_F(WithoutASessionBus, aLockWithoutAnOwnerDoesNotBlock) {
    const QString lock = home() + QStringLiteral("/.sayloft/sayloft.lock");
    test::writeFile(lock, {});
    test::run(QStringLiteral("touch"),
              {QStringLiteral("-d"), QStringLiteral("1 minute ago"), lock});
    const auto program = startAnother();
    EXPECT_TRUE(program->waitForLog(QStringLiteral("event tap installed OK")));
}

/// Nothing finds room in the folder of the program, its lock does not either.
class OnAFullDisk : public WithASessionBus {
protected:
    OnAFullDisk() { m_disk.fill(); }

    void expectThatASecondStartEnds() {
        const test::TrayClient client(m_bus);
        const auto first = startAnother();
        ASSERT_NO_THROW(static_cast<void>(client.sayloft()));
        const auto second = startAnother();
        EXPECT_TRUE(second->program().waitForEnd(10s));
        EXPECT_EQ(second->program().exitCode(), 0);
        EXPECT_TRUE(first->program().isRunning());
    }

    test::SmallDisk m_disk{home() + QStringLiteral("/.sayloft"), "size=2m"};
};

TEST_F(OnAFullDisk, aSecondStartEndsAndTheFirstStays) {
    expectThatASecondStartEnds();
}

TEST_F(OnAFullDisk, aSecondStartEndsAndTheFirstStaysWhereThereIsRoomByThen) {
    const auto first = startAnother();
    const test::TrayClient client(m_bus);
    ASSERT_NO_THROW(static_cast<void>(client.sayloft()));
    m_disk.makeRoom();
    const auto second = startAnother();
    EXPECT_TRUE(second->program().waitForEnd(10s));
    EXPECT_TRUE(first->program().isRunning());
}

TEST_F(OnAFullDisk, aNewStartWorksOnceTheFirstWasKilled) {
    const test::TrayClient client(m_bus);
    {
        const auto first = startAnother();
        ASSERT_NO_THROW(static_cast<void>(client.sayloft()));
        first->program().signal(SIGKILL);
        ASSERT_TRUE(first->program().waitForEnd(5s));
    }
    expectThatASecondStartEnds();
}

TEST_F(OnAFullDisk, aSecondStartLeavesTheHelperOfTheFirstAlone) {
    m_disk.makeRoom();
    test::writeConfig(home(), R"({"model":"starter"})");
    m_disk.fill();
    const auto first = startAnother();
    ASSERT_TRUE(test::waitUntil([] { return !test::helpers().isEmpty(); }, 20s));
    const QByteArray helper = test::helpers();
    const auto second = startAnother();
    EXPECT_TRUE(second->program().waitForEnd(10s));
    EXPECT_EQ(test::helpers(), helper);
    EXPECT_TRUE(first->program().isRunning());
}

/// Nothing can be written anywhere.
class InAReadOnlyHome : public WithASessionBus {
protected:
    void expectThatASecondStartEnds() {
        m_disk.makeReadOnly();
        const test::TrayClient client(m_bus);
        const auto first = startAnother();
        ASSERT_NO_THROW(static_cast<void>(client.sayloft()));
        const auto second = startAnother();
        EXPECT_TRUE(second->program().waitForEnd(10s));
        EXPECT_EQ(second->program().exitCode(), 0);
        EXPECT_TRUE(first->program().isRunning());
    }

    test::SmallDisk m_disk{home(), "size=2m"};
};

TEST_F(InAReadOnlyHome, aSecondStartEndsAtOnce) {
    QDir().mkpath(home() + QStringLiteral("/.sayloft"));
    expectThatASecondStartEnds();
}

TEST_F(InAReadOnlyHome, aSecondStartEndsAtOnceWhereTheProgramHasNoFolderYet) {
    expectThatASecondStartEnds();
}

TEST_F(WithASessionBus, twentyStartsAtOnceLeaveExactlyOne) {
    std::vector<std::unique_ptr<test::SayloftProgram>> starts;
    starts.reserve(20);
    for (int i = 0; i < 20; ++i)
        starts.push_back(startAnother());
    const auto running = [&] {
        return std::count_if(starts.begin(), starts.end(),
                             [](const auto& start) { return start->program().isRunning(); });
    };
    EXPECT_TRUE(test::waitUntil([&] { return running() == 1; }, 30s));
    test::turnEventLoopFor(500ms);
    EXPECT_EQ(running(), 1);
    for (const auto& start : starts)
        EXPECT_TRUE(start->program().isRunning() || start->program().exitCode() == 0);
}

}  // namespace
}  // namespace sayloft
