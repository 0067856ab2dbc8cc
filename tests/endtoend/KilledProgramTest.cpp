// SPDX-License-Identifier: MIT
#include "models/Paths.h"
#include "storage/History.h"
#include "tests/endtoend/Dictation.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

constexpr int longText = 20'000;

QString transcript(int number) {
    return QString::number(number).rightJustified(longText, QLatin1Char('.'));
}

// The program writes a megabyte when it has a transcript, and dies when that is in the log.
TEST_F(Dictation, thatKillsTheProgramWhileItSavesCostsNothingOfTheHistory) {
    fixPaths(QStringLiteral("/nowhere"), m_desk.home());
    History before;
    for (int number = 1; number <= 50; ++number)
        before.add(transcript(number));
    m_desk.startSayloft({RawAnswer::ok(transcript(51).toUtf8())});
    m_desk.say();
    while (!m_desk.sayloft().log().contains(QStringLiteral("TRANSCRIPT")) &&
           m_desk.sayloft().program().isRunning()) {
    }
    m_desk.sayloft().program().signal(SIGKILL);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(5s));
    const std::vector<QString> items = History().items();
    ASSERT_EQ(items.size(), 50U);
    const int newest = items.front() == transcript(51) ? 51 : 50;
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(items.at(static_cast<std::size_t>(i)), transcript(newest - i));
}

}  // namespace
}  // namespace sayloft::test
