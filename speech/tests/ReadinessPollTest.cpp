// SPDX-License-Identifier: MIT
#include "speech/ReadinessPoll.h"

#include "models/Paths.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::RawAnswer;
using test::RawHttpServer;

class Readiness : public testing::Test {
protected:
    static QUrl urlOf(const RawHttpServer& server) {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(server.port()));
    }

    test::TempHome m_home;
    int m_answers = 0;
};

TEST_F(Readiness, isGivenUpSilentlyAfterTheLastProbe) {
    const RawHttpServer silent({RawAnswer::hang()});
    const ReadinessPoll poll(urlOf(silent), {.attempts = 3, .pause = 10ms, .timeout = 50ms},
                             [this] { ++m_answers; });
    ASSERT_TRUE(test::waitUntil([&] { return silent.requests().size() == 3; }));
    test::turnEventLoopFor(300ms);
    EXPECT_EQ(silent.requests().size(), 3U);
    EXPECT_EQ(m_answers, 0);
    EXPECT_FALSE(QFileInfo::exists(LOG_URL));
}

TEST_F(Readiness, isReportedOnceHoweverLongTheAnswerGoesOn) {
    RawAnswer endless = RawAnswer::ok(QByteArray(100'000, 'a'));
    endless.trickleMs = 1;
    const RawHttpServer server({endless});
    const ReadinessPoll poll(urlOf(server), {.attempts = 9, .pause = 10ms, .timeout = 5s},
                             [this] { ++m_answers; });
    ASSERT_TRUE(test::waitUntil([this] { return m_answers > 0; }));
    test::turnEventLoopFor(100ms);
    EXPECT_EQ(m_answers, 1);
}

TEST_F(Readiness, isProbed120TimesHalfASecondApartByDefault) {
    const ReadinessPoll::Schedule schedule;
    EXPECT_EQ(schedule.attempts, 120);
    EXPECT_EQ(schedule.pause, 500ms);
    EXPECT_EQ(schedule.timeout, 1s);
}

}  // namespace
}  // namespace sayloft
