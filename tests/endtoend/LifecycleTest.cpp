// SPDX-License-Identifier: MIT
#include "tests/support/SayloftProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/XServer.h"
#include "tests/support/XfceSession.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

class Program : public testing::Test {
protected:
    Program() {
        test::writeConfig(home(), R"({"model":"starter"})");
        m_environment = m_server->environment();
        m_environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        m_environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    }

    [[nodiscard]] QString home() const { return m_directory.filePath(QStringLiteral("home")); }

    void startAndWaitForTheHelper() {
        m_sayloft = std::make_unique<test::SayloftProgram>(home(), m_environment);
        ASSERT_TRUE(m_sayloft->waitForHelper()) << m_sayloft->log().toStdString();
    }

    /// The same with a helper that leaves a note when it is asked to end.
    void startWithHelperThatNotes() {
        const QString bundle =
            test::bundleWithForeignHelper(m_directory.filePath(QStringLiteral("own")));
        test::writeFile(model(), "serve");
        test::writeConfig(home(), R"({"model":"multilingual"})");
        m_sayloft = std::make_unique<test::SayloftProgram>(home(), m_environment, bundle);
        ASSERT_TRUE(m_sayloft->waitForHelper());
    }

    [[nodiscard]] QString model() const {
        return home() + QStringLiteral("/.sayloft/models/parakeet-tdt-0.6b-v3-f16.gguf");
    }

    void expectThatTheHelperWasAskedToEnd() const {
        EXPECT_TRUE(QFile::exists(model() + QStringLiteral(".ended")));
        EXPECT_FALSE(test::helperRuns());
    }

    QTemporaryDir m_directory;
    std::unique_ptr<test::XServer> m_server = std::make_unique<test::XServer>();
    QProcessEnvironment m_environment;
    std::unique_ptr<test::SayloftProgram> m_sayloft;
};

struct SignalRow {
    const char* name;
    int number;
};

class ProgramAskedToQuit : public Program, public testing::WithParamInterface<SignalRow> {};

TEST_P(ProgramAskedToQuit, endsItsHelperFirstAndExitsWithZero) {
    startWithHelperThatNotes();
    m_sayloft->program().signal(GetParam().number);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(8s));
    EXPECT_EQ(m_sayloft->program().exitCode(), 0);
    expectThatTheHelperWasAskedToEnd();
}

INSTANTIATE_TEST_SUITE_P(Signals, ProgramAskedToQuit,
                         testing::Values(SignalRow{"SIGTERM", SIGTERM}, SignalRow{"SIGINT", SIGINT},
                                         SignalRow{"SIGHUP", SIGHUP}),
                         [](const auto& row) { return row.param.name; });

TEST_F(Program, neverLeavesItsHelperBehindWhenItIsKilled) {
    startAndWaitForTheHelper();
    m_sayloft->program().signal(SIGKILL);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(5s));
    EXPECT_TRUE(test::waitUntil([] { return !test::helperRuns(); }));
}

TEST_F(Program, neverLeavesItsHelperBehindWhenItCrashes) {
    startAndWaitForTheHelper();
    m_sayloft->program().signal(SIGSEGV);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(5s));
    EXPECT_TRUE(test::waitUntil([] { return !test::helperRuns(); }));
}

TEST_F(Program, endsItsHelperFirstWhenTheXServerGoes) {
    startWithHelperThatNotes();
    m_server->program().signal(SIGKILL);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(10s));
    EXPECT_EQ(m_sayloft->program().exitCode(), 1);
    expectThatTheHelperWasAskedToEnd();
}

TEST_F(Program, isNotEndedByAnXServerThatGoesWhileItWrites) {
    m_sayloft = std::make_unique<test::SayloftProgram>(home(), m_environment);
    ASSERT_TRUE(m_sayloft->waitForLog(QStringLiteral("event tap installed OK")));
    m_sayloft->program().signal(SIGPIPE);
    EXPECT_FALSE(m_sayloft->program().waitForEnd(300ms));
}

TEST_F(Program, endsItsHelperAndExitsWithZeroWhenTheUserLogsOut) {
    const QString status = m_directory.filePath(QStringLiteral("status"));
    const QString script = m_directory.filePath(QStringLiteral("start.sh"));
    test::writeFile(script, "#!/bin/sh\n" SAYLOFT_BUNDLE_DIR "/Contents/bin/sayloft\necho $? > " +
                                status.toUtf8() + "\n");
    QFile(script).setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    m_environment.insert(QStringLiteral("HOME"), home());
    const test::SessionBus bus;
    test::XfceSession session(script, m_environment, bus);
    ASSERT_TRUE(test::waitUntil([] { return test::helperRuns(); }, 20s));
    session.logOut();
    ASSERT_TRUE(test::waitUntil([&status] { return !test::readFile(status).isEmpty(); }));
    EXPECT_EQ(test::readFile(status), "0\n");
    EXPECT_FALSE(test::helperRuns());
}

TEST_F(Program, runsOnWhenTheSessionBusGoesAndEndsWithZero) {
    auto bus = std::make_unique<test::SessionBus>();
    bus->addTo(m_environment);
    startAndWaitForTheHelper();
    bus->program().signal(SIGKILL);
    ASSERT_TRUE(bus->program().waitForEnd(5s));
    test::turnEventLoopFor(500ms);
    ASSERT_TRUE(m_sayloft->program().isRunning());
    m_sayloft->program().signal(SIGTERM);
    ASSERT_TRUE(m_sayloft->program().waitForEnd(8s));
    EXPECT_EQ(m_sayloft->program().exitCode(), 0);
}

TEST_F(Program, saysInOneLineThatThereIsNoXServer) {
    m_environment.remove(QStringLiteral("DISPLAY"));
    test::SayloftProgram sayloft(home(), m_environment);
    ASSERT_TRUE(sayloft.program().waitForEnd(5s));
    EXPECT_EQ(sayloft.program().exitCode(), 1);
    EXPECT_EQ(sayloft.program().standardError(),
              "sayloft: needs an X server (on Wayland, Xwayland): DISPLAY is not set\n");
}

TEST_F(Program, saysInOneLineThatNoXServerAnswers) {
    m_environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":54321"));
    test::SayloftProgram sayloft(home(), m_environment);
    ASSERT_TRUE(sayloft.program().waitForEnd(5s));
    EXPECT_EQ(sayloft.program().exitCode(), 1);
    EXPECT_EQ(
        sayloft.program().standardError(),
        "sayloft: needs an X server (on Wayland, Xwayland): nothing answers at DISPLAY :54321\n");
}

TEST_F(Program, runsOnWithoutTheConfiguredModelAndSaysSo) {
    test::writeConfig(home(), R"({"model":"english"})");
    m_sayloft = std::make_unique<test::SayloftProgram>(home(), m_environment);
    EXPECT_TRUE(m_sayloft->waitForLog(QStringLiteral("event tap installed OK")));
    EXPECT_TRUE(m_sayloft->log().contains(
        QStringLiteral("parakeet-server or model missing — run build.sh / download model")));
    EXPECT_TRUE(m_sayloft->log().contains(QStringLiteral("accessibility granted")));
    EXPECT_TRUE(m_sayloft->program().isRunning());
}

TEST_F(Program, worksWhereverItsBundleIsCopiedTo) {
    const QString copy = m_directory.filePath(QStringLiteral("some where/else.app"));
    QDir().mkpath(QFileInfo(copy).path());
    test::run(QStringLiteral("cp"),
              {QStringLiteral("-r"), QStringLiteral(SAYLOFT_BUNDLE_DIR), copy});
    m_environment.insert(QStringLiteral("HOME"), home());
    const test::ChildProgram moved(copy + QStringLiteral("/Contents/bin/sayloft"), {},
                                   m_environment);
    const QString log = home() + QStringLiteral("/.sayloft/sayloft.log");
    EXPECT_TRUE(test::waitUntil([&] {
        return test::readFile(log).contains("parakeet-server starting (starter-en-us.model)");
    }));
    EXPECT_TRUE(test::waitUntil([] { return test::helperRuns(); }));
    const QByteArray pid = test::helpers();
    EXPECT_EQ(QFileInfo(QStringLiteral("/proc/%1/exe").arg(QString::fromLatin1(pid.trimmed())))
                  .symLinkTarget(),
              copy + QStringLiteral("/Contents/Helpers/parakeet-server"));
}

}  // namespace
}  // namespace sayloft
