// SPDX-License-Identifier: MIT
// The real program on a disk that takes a minute to bring a file to it.
#include "tests/endtoend/Dictation.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

TEST_F(Dictation, onASlowDiskIsSavedWithoutWaitingForItAtTheEnd) {
    const QTemporaryDir directory;
    const QString trace = directory.filePath(QStringLiteral("trace"));
    // Where there is no copy yet, the very first one is waited for.
    for (const char* name : {"history.json", "history.json.saved"})
        writeFile(m_desk.dataFile(QString::fromLatin1(name)), R"(["older"])");
    m_desk.runBy(
        strace(trace, {QStringLiteral("-e"), QStringLiteral("trace=fsync"), QStringLiteral("-e"),
                       QStringLiteral("inject=fsync:delay_enter=60000000")}));
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    const QByteArray saved = R"(["words","older"])";
    EXPECT_TRUE(waitUntil([&] { return m_desk.history() == saved; }));
    const TrayClient tray(m_desk.bus());
    const int program = tracedBy(m_desk.sayloft().program().pid());
    QElapsedTimer timer;
    timer.start();
    tray.click(QStringLiteral("Quit"));
    ASSERT_TRUE(waitUntil([&] { return hasEnded(program); }, 20s));
    // A second for the files, and what the helper and the clipboard may take.
    const int taken = static_cast<int>(timer.elapsed());
    m_desk.sayloft().program().signal(SIGKILL);
    EXPECT_GE(taken, 900);
    EXPECT_LT(taken, 6000);
    RecordProperty("milliseconds", taken);
    EXPECT_TRUE(readFile(trace).contains("fsync(")) << "the disk was not awaited at all";
    EXPECT_EQ(m_desk.history(), saved);
    EXPECT_EQ(readFile(m_desk.dataFile(QStringLiteral("history.json.new"))), saved);
}

}  // namespace
}  // namespace sayloft::test
