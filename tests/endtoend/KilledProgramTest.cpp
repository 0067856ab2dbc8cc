// SPDX-License-Identifier: MIT
#include "models/Paths.h"
#include "storage/History.h"
#include "tests/endtoend/Dictation.h"
#include "tests/support/Strace.h"
#include "tests/support/WaitUntil.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

constexpr int longText = 20'000;

QString transcript(int number) {
    return QString::number(number).rightJustified(longText, QLatin1Char('.'));
}

// Between the moment when the file is emptied and that when it is written, which does not come.
TEST_F(Dictation, thatKillsTheProgramWhileItsHistoryIsCutOffCostsNothingOfIt) {
    fixPaths(QStringLiteral("/nowhere"), m_desk.home());
    History before;
    for (int number = 1; number <= 50; ++number)
        before.add(transcript(number));
    const QTemporaryDir directory;
    m_desk.runBy(strace(directory.filePath(QStringLiteral("trace")),
                        {QStringLiteral("-e"), QStringLiteral("trace=write"), QStringLiteral("-e"),
                         QStringLiteral("inject=write:delay_enter=60000000"), QStringLiteral("-P"),
                         History::url()}));
    m_desk.startSayloft({RawAnswer::ok(transcript(51).toUtf8())});
    m_desk.say();
    ASSERT_TRUE(waitUntil([] { return QFileInfo(History::url()).size() == 0; }, 20s));
    const int program = tracedBy(m_desk.sayloft().program().pid());
    ASSERT_EQ(::kill(program, SIGKILL), 0);
    // Until then it waits for the end of its call.
    m_desk.sayloft().program().signal(SIGKILL);
    ASSERT_TRUE(waitUntil([&] { return hasEnded(program); }));
    EXPECT_EQ(QFileInfo(History::url()).size(), 0);
    EXPECT_EQ(History::file().read().source, KeptFile::Source::copy);
    const std::vector<QString> items = History().items();
    ASSERT_EQ(items.size(), 50U);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(items.at(static_cast<std::size_t>(i)), transcript(51 - i));
}

}  // namespace
}  // namespace sayloft::test
