// SPDX-License-Identifier: MIT
#include "storage/Log.h"

#include "models/Paths.h"
#include "tests/support/TempHome.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace sayloft {
namespace {

class Log : public testing::Test {
protected:
    test::TempHome m_home;
};

TEST_F(Log, createsTheDirectoryAndTheFileOnTheFirstCall) {
    ASSERT_FALSE(QFileInfo::exists(DATA_DIR));
    logf(QStringLiteral("event tap installed OK"));
    EXPECT_EQ(test::readFile(LOG_URL), "event tap installed OK\n");
}

TEST_F(Log, appendsAndNeverTruncatesWhatIsThere) {
    test::writeFile(LOG_URL, "from an earlier run\n");
    logf(QStringLiteral("first"));
    logf(QStringLiteral("sécond"));
    EXPECT_EQ(test::readFile(LOG_URL), "from an earlier run\nfirst\nsécond\n");
}

TEST_F(Log, writesAnEmptyLineAfterAMessageThatEndsInALineFeed) {
    logf(QStringLiteral("done\n"));
    EXPECT_EQ(test::readFile(LOG_URL), "done\n\n");
}

TEST_F(Log, writesAMessageOfSeveralLinesAsItIs) {
    logf(QStringLiteral("one\ntwo"));
    EXPECT_EQ(test::readFile(LOG_URL), "one\ntwo\n");
}

TEST_F(Log, goesOnAfterItsFileWasDeleted) {
    logf(QStringLiteral("before"));
    QFile::remove(LOG_URL);
    logf(QStringLiteral("after"));
    EXPECT_EQ(test::readFile(LOG_URL), "after\n");
}

TEST_F(Log, neverDisturbsTheCallerWhenNothingCanBeWritten) {
    test::writeFile(DATA_DIR, "a file where the directory should be");
    logf(QStringLiteral("lost"));
    EXPECT_EQ(test::readFile(DATA_DIR), "a file where the directory should be");
}

TEST_F(Log, keepsEveryLineWholeWhenManyThreadsWrite) {
    constexpr int threads = 8;
    constexpr int linesEach = 200;
    logf(QStringLiteral("start"));
    std::vector<std::jthread> writers;
    writers.reserve(threads);
    for (int i = 0; i < threads; ++i) {
        writers.emplace_back([i] {
            for (int line = 0; line < linesEach; ++line)
                logf(QString(100, QLatin1Char(static_cast<char>('a' + i))));
        });
    }
    writers.clear();

    const QList<QByteArray> lines = test::readFile(LOG_URL).trimmed().split('\n');
    ASSERT_EQ(lines.size(), 1 + threads * linesEach);
    for (const QByteArray& line : lines.mid(1))
        EXPECT_EQ(line, QByteArray(100, line.at(0)));
}

}  // namespace
}  // namespace sayloft
