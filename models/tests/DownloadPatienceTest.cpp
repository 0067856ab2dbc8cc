// SPDX-License-Identifier: MIT
// How long the program itself waits for a host, by a clock that runs sixty times as fast.
#include "models/Paths.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

TEST(ADownload, waitsAMinuteForAHostThatIsSilent) {
    const test::TempHome home;
    const test::RawHttpServer host({test::RawAnswer::hang()});
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), QStringLiteral(SAYLOFT_FAKETIME_DIR));
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral("libfaketimeMT.so.1"));
    environment.insert(QStringLiteral("FAKETIME"), QStringLiteral("+0 x60"));
    QElapsedTimer timer;
    timer.start();
    test::ChildProgram program(QStringLiteral(DOWNLOAD_ONCE),
                               {QStringLiteral("http://127.0.0.1:%1/model").arg(host.port()),
                                home.path() + QStringLiteral("/model")},
                               environment);
    ASSERT_TRUE(program.waitForEnd(30s));
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_GE(timer.elapsed(), 990) << "a second is a minute here";
    EXPECT_EQ(home.log().toStdString(), "download error: nothing has come for 60 s\n");
}

}  // namespace
}  // namespace sayloft
