// SPDX-License-Identifier: MIT
// What the tray item says while somebody dictates, seen from outside on the bus.
#include "tests/endtoend/DictationDesk.h"
#include "tests/support/TitleWatch.h"
#include "tests/support/TrayClient.h"
#include "tests/support/TrayHost.h"
#include "tests/support/WaitUntil.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::DictationDesk;
using test::RawAnswer;

const QString oneMoment = QStringLiteral("Sayloft: one moment…");
const QString ready = QStringLiteral("Sayloft: ready");
const QString listening = QStringLiteral("Sayloft: listening");
const QString didNotWork = QStringLiteral("Sayloft: that did not work");

class TheTrayItem : public testing::Test {
protected:
    void watchFromReady() {
        ASSERT_TRUE(test::waitUntil([this] { return title() == ready; }));
        m_watch = std::make_unique<test::TitleWatch>(m_desk.bus(), m_client.sayloft());
    }

    [[nodiscard]] QString title() const {
        return m_client.property(QStringLiteral("Title")).remove(QLatin1Char('\''));
    }

    /// Waits for that many titles.
    [[nodiscard]] QStringList titles(qsizetype count) {
        static_cast<void>(test::waitUntil([&] { return m_watch->titles().size() >= count; }, 30s));
        return m_watch->titles();
    }

    DictationDesk m_desk;
    test::TrayHost m_panel{test::TrayHostKind::xfcePanel, m_desk.display(), m_desk.bus()};
    test::TrayClient m_client{m_desk.bus()};
    std::unique_ptr<test::TitleWatch> m_watch;
};

TEST_F(TheTrayItem, followsADictationFromReadyToReady) {
    m_desk.startSayloft({RawAnswer::ok("hello world")});
    ASSERT_NO_FATAL_FAILURE(watchFromReady());
    m_desk.say();
    EXPECT_THAT(titles(4), testing::ElementsAre(ready, listening, oneMoment, ready));
    EXPECT_TRUE(test::waitUntil(
        [this] { return m_client.idOf(QStringLiteral("hello world")).has_value(); }));
}

TEST_F(TheTrayItem, showsAFailedDictationForAMoment) {
    m_desk.startSayloft({RawAnswer::status(500)});
    ASSERT_NO_FATAL_FAILURE(watchFromReady());
    m_desk.say();
    EXPECT_THAT(titles(5), testing::ElementsAre(ready, listening, oneMoment, didNotWork, ready));
}

TEST_F(TheTrayItem, isWarmingUpUntilTheSpeechServerAnswers) {
    m_desk.startSayloftWithoutServer();
    EXPECT_EQ(title(), oneMoment);
}

}  // namespace
}  // namespace sayloft
