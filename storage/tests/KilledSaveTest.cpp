// SPDX-License-Identifier: MIT
// A program that saves is killed at any moment, and what it leaves is read.
#include "models/Paths.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/StoredFiles.h"
#include "storage/tests/NumberedState.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstring>
#include <random>
#include <thread>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr int transcriptSize = 4000;

class AKilledSave : public testing::Test {
protected:
    /// Has the program save from `first` on, kills it when `moment` has passed after its first
    /// state, and returns the number of the last state that was saved to the end.
    int saveUntilKilled(int first, std::chrono::microseconds moment) {
        test::ChildProgram program(
            QStringLiteral(SAVE_FOREVER),
            {m_home.path(), QString::number(first), QString::number(transcriptSize)});
        program.process().waitForReadyRead(10'000);
        const auto killed = std::chrono::steady_clock::now() + moment;
        while (std::chrono::steady_clock::now() < killed)
            std::this_thread::yield();
        program.signal(SIGKILL);
        EXPECT_TRUE(program.waitForEnd(10s));
        const QByteArray numbers = program.standardOutput();
        int last = first;
        if (numbers.size() >= qsizetype{sizeof(last)})
            std::memcpy(&last, numbers.constEnd() - sizeof(last), sizeof(last));
        return last;
    }

    /// Whether what is read is complete and of that number or the next.
    static testing::AssertionResult isOldOrNew(int read, int number) {
        if (read == number || read == number + 1)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "lost " << number << ": " << read;
    }
    static int settingsRead() { return test::numberOf(Config::load()); }
    static int historyRead() { return test::numberOf(History(), transcriptSize); }

    static bool isCutOff(const KeptFile& file) {
        return file.read().source == KeptFile::Source::copy;
    }

    test::TempHome m_home;
};

TEST_F(AKilledSave, costsNeitherTheSettingsNorTheHistory) {
    constexpr int rounds = 250;
    std::mt19937 random(20240229);
    std::uniform_int_distribution<int> moment(0, 8'000);
    int number = 1;
    int cutOff = 0;
    for (int round = 0; round < rounds; ++round) {
        number = saveUntilKilled(number, std::chrono::microseconds(moment(random)));
        cutOff += isCutOff(Config::file()) || isCutOff(History::file()) ? 1 : 0;
        ASSERT_TRUE(isOldOrNew(settingsRead(), number)) << "round " << round;
        ASSERT_TRUE(isOldOrNew(historyRead(), number)) << "round " << round;
        // As the next start of the program does.
        mendStoredFiles();
        ASSERT_TRUE(isOldOrNew(settingsRead(), number)) << "round " << round;
        ASSERT_TRUE(isOldOrNew(historyRead(), number)) << "round " << round;
        number = historyRead() + 1;
    }
    RecordProperty("cutOff", cutOff);
    EXPECT_GT(cutOff, 0) << "no kill has hit the moment that matters";
    EXPECT_EQ(m_home.log().count(QStringLiteral("damaged")), 0);
}

// Every synchronisation takes half a second here, and a save is still done at once.
TEST_F(AKilledSave, isNotOneThatWaitedForTheDisk) {
    const QString trace = m_home.path() + QStringLiteral("/trace");
    QStringList command = test::strace(trace, {QStringLiteral("-e"), QStringLiteral("trace=fsync"),
                                               QStringLiteral("-e"),
                                               QStringLiteral("inject=fsync:delay_enter=500000")}) +
                          QStringList{QStringLiteral(SAVE_FOREVER), m_home.path(),
                                      QStringLiteral("1"), QString::number(transcriptSize)};
    const QString strace = command.takeFirst();
    test::ChildProgram program(strace, command);
    constexpr qsizetype states = 200;
    QByteArray numbers;
    EXPECT_TRUE(test::waitUntil(
        [&] {
            numbers += program.standardOutput();
            return numbers.size() >= states * qsizetype{sizeof(int)};
        },
        30s));
    // strace itself does not heed SIGTERM.
    program.signal(SIGKILL);
    program.end();
    EXPECT_TRUE(test::readFile(trace).contains("fsync(")) << program.standardError().toStdString();
}

}  // namespace
}  // namespace sayloft
