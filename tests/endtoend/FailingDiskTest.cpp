// SPDX-License-Identifier: MIT
// The real program while calls of the kernel that concern its files fail.
#include "tests/endtoend/Dictation.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QTemporaryDir>

#include <ostream>
#include <string>

namespace sayloft::test {
namespace {

struct Failing {
    std::string description;
    QStringList files;  ///< in the program's folder
    QString call;
    QString when;
};

void PrintTo(const Failing& failing, std::ostream* out) {
    *out << failing.description;
}

class ADictationOnAFailingDisk : public Dictation, public testing::WithParamInterface<Failing> {
protected:
    ADictationOnAFailingDisk() {
        const Failing& failing = GetParam();
        QStringList command = strace(
            m_trace,
            {QStringLiteral("-e"), QStringLiteral("trace=") + failing.call, QStringLiteral("-e"),
             QStringLiteral("inject=%1:error=ENOSPC:when=%2").arg(failing.call, failing.when)});
        for (const QString& file : failing.files)
            command << QStringLiteral("-P") << m_desk.dataFile(file);
        m_desk.runBy(command);
    }

    const QTemporaryDir m_directory;
    const QString m_trace = m_directory.filePath(QStringLiteral("trace"));
};

TEST_P(ADictationOnAFailingDisk, losesNoWordsWhere) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.say();
    expectInEditor(QStringLiteral("First"));
    expectWholeSoundInLastRecording();
    m_desk.say();
    expectInEditor(QStringLiteral("FirstSecond"));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(readFile(m_trace).contains("(INJECTED)")) << "no call has failed";
}

const QStringList recording{QStringLiteral("tmp/sayloft_rec.wav")};
const QStringList history{QStringLiteral("history.json"), QStringLiteral("history.json.new"),
                          QStringLiteral("history.json.new.part"),
                          QStringLiteral("history.json.saved")};
const QStringList log{QStringLiteral("sayloft.log")};
const QString write = QStringLiteral("write");
const QString open = QStringLiteral("openat");
const QString always = QStringLiteral("1+");

INSTANTIATE_TEST_SUITE_P(
    The, ADictationOnAFailingDisk,
    testing::Values(
        Failing{"recordingCanNeverBeWritten", recording, write, always},
        Failing{"recordingCannotBeWrittenOnce", recording, write, QStringLiteral("5")},
        Failing{"recordingCannotBeWrittenOnceLater", recording, write, QStringLiteral("6")},
        Failing{"recordingCannotBeWrittenFromSomewhereOn", recording, write, QStringLiteral("5+")},
        Failing{"historyCanNeverBeWritten", history, write, always},
        Failing{"historyCanNeverBeOpened", history, open, always},
        Failing{"logCannotBeWrittenAnyMore", log, write, QStringLiteral("6+")}),
    [](const auto& row) { return row.param.description; });

}  // namespace
}  // namespace sayloft::test
