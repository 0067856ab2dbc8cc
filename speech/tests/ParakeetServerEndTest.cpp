// SPDX-License-Identifier: MIT
// How the speech server ends, and what becomes of one that does not want to.
#include "speech/tests/ParakeetServerFixture.h"

#include <QElapsedTimer>
#include <QTimer>

#include <csignal>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

/// The longest time for which the main thread did not come back to its event loop.
class Responsiveness {
public:
    Responsiveness() {
        m_sinceTick.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer,
                         [this] { m_longest = std::max(m_longest, m_sinceTick.restart()); });
        m_timer.start(1ms);
    }

    [[nodiscard]] qint64 longestPauseMs() const {
        return std::max(m_longest, m_sinceTick.elapsed());
    }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    qint64 m_longest = 0;
};

TEST_F(Server, stoppedIsGoneWhenTheCallReturnsAndStaysReady) {
    m_server.start(model("serve"));
    ASSERT_TRUE(waitForReady());
    m_server.stop();
    EXPECT_TRUE(runningHelpers().empty());
    EXPECT_TRUE(m_server.ready());
}

TEST_F(Server, thatEndsByItselfIsReported) {
    int gone = 0;
    m_server.onGone = [&gone] { ++gone; };
    m_server.start(model("serve"));
    ASSERT_TRUE(waitForReady());
    ::kill(static_cast<pid_t>(runningHelpers().at(0)), SIGKILL);
    EXPECT_TRUE(test::waitUntil([&gone] { return gone == 1; }));
}

TEST_F(Server, thatIsStoppedOrReplacedIsNotReportedAsGone) {
    int gone = 0;
    m_server.onGone = [&gone] { ++gone; };
    const QString path = model("serve");
    m_server.start(path);
    ASSERT_TRUE(waitForReady());
    m_server.restart(path);
    ASSERT_TRUE(waitForReady(2));
    m_server.start(path);
    ASSERT_TRUE(waitForReady(3));
    m_server.stop();
    test::turnEventLoopFor(100ms);
    EXPECT_EQ(gone, 0);
}

TEST_F(Server, canBeStoppedWithoutAProcess) {
    m_server.stop();
    EXPECT_FALSE(m_server.ready());
    EXPECT_TRUE(m_home.log().isEmpty());
}

TEST_F(Server, thatIgnoresTheRequestToEndIsKilledAfterThreeSeconds) {
    m_server.start(model("ignore-term"));
    ASSERT_TRUE(waitForReady());
    QElapsedTimer elapsed;
    elapsed.start();
    m_server.stop();
    EXPECT_GE(elapsed.elapsed(), 2900);
    EXPECT_LT(elapsed.elapsed(), 5000);
    EXPECT_TRUE(runningHelpers().empty());
}

struct MisbehaviourRow {
    const char* name;
    const char* behaviour;
    int signal;  ///< sent to the helper once it runs; 0: none
};

class MisbehavingServer : public Server, public testing::WithParamInterface<MisbehaviourRow> {};

TEST_P(MisbehavingServer, neverBlocksTheMainThreadAndCanBeReplaced) {
    const QString path = model(GetParam().behaviour);
    const QString next = model("serve");
    Responsiveness responsiveness;
    m_server.start(path);
    ASSERT_TRUE(waitForStart(path));
    if (GetParam().signal != 0) {
        for (const qint64 pid : runningHelpers())
            ::kill(static_cast<pid_t>(pid), GetParam().signal);
    }
    test::turnEventLoopFor(300ms);
    const int readyBefore = m_readyCalls;
    m_server.restart(next);
    EXPECT_TRUE(waitForReady(readyBefore + 1));
    EXPECT_TRUE(m_server.ready());
    EXPECT_EQ(runningHelpers().size(), 1U);
    EXPECT_LT(responsiveness.longestPauseMs(), 150);
}

INSTANTIATE_TEST_SUITE_P(
    Helpers, MisbehavingServer,
    testing::Values(MisbehaviourRow{"killed", "serve", SIGKILL},
                    MisbehaviourRow{"frozen", "serve", SIGSTOP},
                    MisbehaviourRow{"frozenAndStubborn", "ignore-term", SIGSTOP},
                    MisbehaviourRow{"exitsAtOnce", "exit", 0},
                    MisbehaviourRow{"printsWithoutEnd", "print", 0},
                    MisbehaviourRow{"ignoresTheRequestToEnd", "ignore-term", 0},
                    MisbehaviourRow{"neverListens", "deaf", 0}),
    [](const auto& row) { return row.param.name; });

TEST_F(Server, leavesNoProcessBehindWhenItsOwnerGoes) {
    const QString path = model("serve");
    {
        ParakeetServer shortLived;
        shortLived.start(path);
        ASSERT_TRUE(waitForStart(path));
    }
    EXPECT_TRUE(runningHelpers().empty());
}

}  // namespace
}  // namespace sayloft
