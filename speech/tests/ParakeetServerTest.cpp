// SPDX-License-Identifier: MIT
#include "speech/ParakeetServer.h"

#include "models/Paths.h"
#include "speech/HelperProcess.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

#include <gtest/gtest.h>

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

std::vector<qint64> runningHelpers() {
    QProcess pgrep;
    pgrep.start(QStringLiteral("pgrep"), {QStringLiteral("-x"), QStringLiteral("parakeet-server")});
    pgrep.waitForFinished(5000);
    std::vector<qint64> pids;
    for (const QByteArray& line : pgrep.readAllStandardOutput().split('\n')) {
        if (!line.isEmpty())
            pids.push_back(line.toLongLong());
    }
    return pids;
}

/// A bundle with a foreign helper in it, whose behaviour is the model's.
class Server : public testing::Test {
protected:
    Server() {
        installHelper();
        m_server.onReady = [this] { ++m_readyCalls; };
    }

    static QString installedHelper() {
        return BUNDLE_DIR + QStringLiteral("/Contents/Helpers/parakeet-server");
    }

    void installHelper() {
        ASSERT_TRUE(QFile::copy(QStringLiteral(SAYLOFT_FOREIGN_HELPER), installedHelper()));
        fixPaths(BUNDLE_DIR, m_home.path());
    }

    QString model(const QByteArray& behaviour) {
        QString path = DOWNLOAD_MODELS_DIR + QLatin1Char('/') + QString::fromLatin1(behaviour) +
                       QStringLiteral(".gguf");
        test::writeFile(path, behaviour);
        return path;
    }

    /// What the helper has noted of its starts with this model.
    static QList<QByteArray> startsWith(const QString& modelPath) {
        QList<QByteArray> lines = test::readFile(modelPath + QStringLiteral(".log")).split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

    [[nodiscard]] bool waitForReady(int calls = 1) {
        return test::waitUntil([&] { return m_readyCalls >= calls; });
    }

    [[nodiscard]] bool waitForStart(const QString& modelPath, int starts = 1) {
        return test::waitUntil([&] { return startsWith(modelPath).size() >= starts; });
    }

    test::TempHome m_home;
    ParakeetServer m_server;
    int m_readyCalls = 0;
};

TEST_F(Server, isLaunchedWithTheModelAndSaysWhenItAnswers) {
    const QString path = model("serve");
    m_server.start(path);
    EXPECT_FALSE(m_server.ready());
    ASSERT_TRUE(waitForReady());
    EXPECT_TRUE(m_server.ready());
    ASSERT_EQ(startsWith(path).size(), 1);
    const QByteArray line = startsWith(path).first();
    const QByteArray arguments = line.mid(line.indexOf(' ') + 1);
    EXPECT_EQ(arguments, "--model " + path.toUtf8() + " --host 127.0.0.1 --port 8090");
    EXPECT_EQ(m_home.log(), QStringLiteral("parakeet-server starting (serve.gguf)\n"));
}

TEST_F(Server, isNotLaunchedWithoutTheModel) {
    m_server.start(m_home.path() + QStringLiteral("/none.gguf"));
    EXPECT_EQ(m_home.log(),
              QStringLiteral("parakeet-server or model missing — run build.sh / download model\n"));
    test::turnEventLoopFor(500ms);
    EXPECT_FALSE(m_server.ready());
    EXPECT_TRUE(runningHelpers().empty());
}

TEST_F(Server, isNotLaunchedWithoutItsExecutable) {
    QFile::remove(installedHelper());
    m_server.start(model("serve"));
    EXPECT_EQ(m_home.log(),
              QStringLiteral("parakeet-server or model missing — run build.sh / download model\n"));
    EXPECT_FALSE(m_server.ready());
}

TEST_F(Server, thatCannotBeLaunchedIsLoggedWithItsReason) {
    test::writeFile(installedHelper(), "not a program");
    QFile::setPermissions(installedHelper(), QFile::ReadOwner | QFile::WriteOwner);
    m_server.start(model("serve"));
    ASSERT_TRUE(test::waitUntil([this] { return !m_home.log().isEmpty(); }));
    EXPECT_TRUE(m_home.log().startsWith(QStringLiteral("parakeet-server failed to start: ")));
    EXPECT_GT(m_home.log().trimmed().size(),
              QStringLiteral("parakeet-server failed to start: ").size());
    EXPECT_FALSE(m_server.ready());
}

TEST_F(Server, isLaunchedAlsoWhereProcessesCannotBeEndedByName) {
    HelperProcess process(QStringLiteral("/no/such/pkill"));
    EXPECT_TRUE(process.launch(model("serve")));
    EXPECT_EQ(runningHelpers().size(), 1U);
}

TEST_F(Server, startedAgainIsTheOnlyOne) {
    const QString first = model("serve");
    const QString second = model("not-found");
    m_server.start(first);
    ASSERT_TRUE(waitForReady());
    const qint64 firstPid = runningHelpers().at(0);
    m_server.start(second);
    EXPECT_FALSE(m_server.ready());
    ASSERT_TRUE(waitForReady(2));
    ASSERT_EQ(runningHelpers().size(), 1U);
    EXPECT_NE(runningHelpers().at(0), firstPid);
    EXPECT_EQ(startsWith(second).size(), 1);
}

TEST_F(Server, clearsAwayAStrangerOfTheSameName) {
    const QString strangersModel = model("ignore-nothing");
    test::ChildProgram stranger(
        QStringLiteral(SAYLOFT_FOREIGN_HELPER),
        {QStringLiteral("--model"), strangersModel, QStringLiteral("--host"),
         QStringLiteral("127.0.0.1"), QStringLiteral("--port"), QStringLiteral("8090")});
    ASSERT_TRUE(waitForStart(strangersModel));
    m_server.start(model("serve"));
    ASSERT_TRUE(waitForReady());
    EXPECT_TRUE(stranger.waitForEnd(1s));
    EXPECT_EQ(runningHelpers().size(), 1U);
}

TEST_F(Server, isReadyWhateverItAnswers) {
    m_server.start(model("not-found"));
    EXPECT_TRUE(waitForReady());
}

TEST_F(Server, isReadyOnlyOnceItAnswers) {
    m_server.start(model("slow"));
    test::turnEventLoopFor(1s);
    EXPECT_FALSE(m_server.ready());
    EXPECT_TRUE(waitForReady());
}

TEST_F(Server, thatNobodyCanConnectToIsNotReady) {
    const QString path = model("deaf");
    m_server.start(path);
    ASSERT_TRUE(waitForStart(path));
    test::turnEventLoopFor(1500ms);
    EXPECT_FALSE(m_server.ready());
}

TEST_F(Server, thatTakesConnectionsButNeverAnswersIsNotReady) {
    const test::RawHttpServer silent({test::RawAnswer::hang()}, 8090);
    const QString path = model("deaf");
    m_server.start(path);
    ASSERT_TRUE(test::waitUntil([&] { return silent.requests().size() >= 2; }));
    EXPECT_FALSE(m_server.ready());
    EXPECT_EQ(silent.requests().front().left(16), "GET / HTTP/1.1\r\n");
}

TEST_F(Server, stoppedIsGoneWhenTheCallReturnsAndStaysReady) {
    m_server.start(model("serve"));
    ASSERT_TRUE(waitForReady());
    m_server.stop();
    EXPECT_TRUE(runningHelpers().empty());
    EXPECT_TRUE(m_server.ready());
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

TEST_F(Server, startedTwiceInARowEndsAsTheSecond) {
    const QString first = model("deaf");
    const QString second = model("serve");
    m_server.start(first);
    m_server.start(second);
    ASSERT_TRUE(waitForReady());
    EXPECT_EQ(runningHelpers().size(), 1U);
    EXPECT_EQ(startsWith(second).size(), 1);
    EXPECT_EQ(m_readyCalls, 1);
}

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
