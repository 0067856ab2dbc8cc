// SPDX-License-Identifier: MIT
#include "speech/HelperProcess.h"
#include "speech/tests/ParakeetServerFixture.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/RawHttpServer.h"

#include <QFileInfo>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

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

TEST_F(Server, hasThePortOnceItListensThere) {
    EXPECT_FALSE(m_server.hasPort());
    m_server.start(model("serve"));
    ASSERT_TRUE(waitForReady());
    EXPECT_TRUE(m_server.hasPort());
    m_server.stop();
    EXPECT_FALSE(m_server.hasPort());
}

TEST_F(Server, doesNotHaveThePortWhereAStrangerListensAndSaysSo) {
    const test::RawHttpServer stranger({test::RawAnswer::ok("hello")}, 8090);
    int strangers = 0;
    m_server.onStranger = [&strangers] { ++strangers; };
    m_server.start(model("deaf"));
    ASSERT_TRUE(waitForReady());
    EXPECT_FALSE(m_server.hasPort());
    EXPECT_TRUE(test::waitUntil([&] { return strangers == 1; }));
    EXPECT_TRUE(m_home.log().contains(
        QStringLiteral("another program listens at port 8090 — no sound was sent to it")));
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

}  // namespace
}  // namespace sayloft
