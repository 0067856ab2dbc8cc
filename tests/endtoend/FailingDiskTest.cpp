// SPDX-License-Identifier: MIT
// The real program while calls of the kernel that concern its files fail.
#include "models/Paths.h"
#include "storage/Config.h"
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <ostream>
#include <string>

namespace sayloft::test {
namespace {

struct Failing {
    std::string description;
    QStringList files;  ///< in the home directory; of a move what is moved
    QString call;
    QString when;
};

void PrintTo(const Failing& failing, std::ostream* out) {
    *out << failing.description;
}

class OnAFailingDisk : public Dictation, public testing::WithParamInterface<Failing> {
protected:
    OnAFailingDisk() {
        const Failing& failing = GetParam();
        QStringList command = strace(
            m_trace,
            {QStringLiteral("-e"), QStringLiteral("trace=") + failing.call, QStringLiteral("-e"),
             QStringLiteral("inject=%1:error=ENOSPC:when=%2").arg(failing.call, failing.when)});
        for (const QString& file : failing.files)
            command << QStringLiteral("-P") << m_desk.home() + QLatin1Char('/') + file;
        m_desk.runBy(command);
    }

    void expectFailedCalls() const {
        EXPECT_TRUE(readFile(m_trace).contains("(INJECTED)")) << "no call has failed";
    }

    /// Whether the menu comes to have both as transcripts.
    [[nodiscard]] bool menuHas(const QString& first, const QString& second) const {
        return waitUntil([&] {
            const QStringList labels = m_tray.labels();
            return labels.contains(first) && labels.contains(second);
        });
    }

    const TrayClient m_tray{m_desk.bus()};
    const QTemporaryDir m_directory;
    const QString m_trace = m_directory.filePath(QStringLiteral("trace"));
};

class ADictationOnAFailingDisk : public OnAFailingDisk {};

TEST_P(ADictationOnAFailingDisk, losesNoWordsWhere) {
    m_desk.prepare({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.startPreparedWithoutLog();
    m_desk.say();
    expectInEditor(QStringLiteral("First"));
    expectWholeSoundInLastRecording();
    m_desk.say();
    expectInEditor(QStringLiteral("FirstSecond"));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(menuHas(QStringLiteral("First"), QStringLiteral("Second")));
    expectFailedCalls();
}

const QStringList recording{QStringLiteral(".sayloft/tmp/sayloft_rec.wav")};
const QStringList history{QStringLiteral(".sayloft/history.json"),
                          QStringLiteral(".sayloft/history.json.new"),
                          QStringLiteral(".sayloft/history.json.new.part"),
                          QStringLiteral(".sayloft/history.json.saved")};
const QStringList log{QStringLiteral(".sayloft/sayloft.log")};
const QStringList copiesOfSettings{QStringLiteral(".sayloft/config.json.new"),
                                   QStringLiteral(".sayloft/config.json.new.part"),
                                   QStringLiteral(".sayloft/config.json.saved")};
const QStringList settings = copiesOfSettings + QStringList{QStringLiteral(".sayloft/config.json")};
const QStringList failed{QStringLiteral(".sayloft/last-failed.wav")};
const QStringList partOfFailed{QStringLiteral(".sayloft/last-failed.wav.part")};
const QStringList autostart{QStringLiteral(".config/autostart/org.sayloft.Sayloft.desktop")};
const QString write = QStringLiteral("write");
const QString open = QStringLiteral("openat");
const QString move = QStringLiteral("rename");
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
        Failing{"logCanNeverBeOpened", log, open, always},
        Failing{"logCannotBeWrittenAnyMore", log, write, QStringLiteral("6+")}),
    [](const auto& row) { return row.param.description; });

class ATranscriptOnAFailingDisk : public OnAFailingDisk {};

TEST_P(ATranscriptOnAFailingDisk, isSavedWithTheNextOneWhere) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.say();
    expectInEditor(QStringLiteral("First"));
    m_desk.say();
    expectInEditor(QStringLiteral("FirstSecond"));
    EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["Second","First"])"; }))
        << m_desk.history().toStdString();
    expectFailedCalls();
}

TEST_P(ATranscriptOnAFailingDisk, isSavedAtTheEndOfTheProgramWhere) {
    m_desk.startSayloft({RawAnswer::ok("First")});
    m_desk.say();
    expectInEditor(QStringLiteral("First"));
    const int program = tracedBy(m_desk.sayloft().program().pid());
    m_tray.click(QStringLiteral("Quit"));
    ASSERT_TRUE(waitUntil([&] { return hasEnded(program); }));
    EXPECT_EQ(m_desk.history(), R"(["First"])");
    expectFailedCalls();
}

INSTANTIATE_TEST_SUITE_P(
    The, ATranscriptOnAFailingDisk,
    testing::Values(Failing{"recordingCanNeverBeWritten", recording, write, always},
                    Failing{"logCannotBeWrittenAnyMore", log, write, QStringLiteral("3+")},
                    Failing{"historyCannotBeWrittenOnce", history, write, QStringLiteral("1")},
                    Failing{"historyCannotBeWrittenTwice", history, write, QStringLiteral("1..2")},
                    Failing{"historyCannotBeOpenedForAWhile", history, open,
                            QStringLiteral("1..4")}),
    [](const auto& row) { return row.param.description; });

class AMissingTrayOnAFailingDisk : public OnAFailingDisk {};

TEST_P(AMissingTrayOnAFailingDisk, isToldAtEveryStartAndCostsNoWordsWhere) {
    QString text;
    for (int start = 1; start <= 2; ++start) {
        m_desk.prepare({RawAnswer::ok("words")});
        m_desk.startPrepared();
        EXPECT_TRUE(m_tray.tooltipSays(QStringLiteral("no place for the icon")));
        expectFailedCalls();
        m_desk.say();
        expectInEditor(text += QStringLiteral("words"));
    }
}

INSTANTIATE_TEST_SUITE_P(
    The, AMissingTrayOnAFailingDisk,
    testing::Values(Failing{
        "markOfItCannotBeMade", {QStringLiteral(".sayloft/no-tray-told")}, open, always}),
    [](const auto& row) { return row.param.description; });

class ASettingOnAFailingDisk : public OnAFailingDisk {
protected:
    const SettingsSwitch m_settings{m_desk};
};

TEST_P(ASettingOnAFailingDisk, costsNeitherWordsNorOtherSettingsWhere) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.say();
    expectInEditor(QStringLiteral("First"));
    m_settings.open();
    m_settings.press(SettingsSwitch::boost);
    EXPECT_TRUE(waitUntil([this] { return !m_settings.isOn(SettingsSwitch::boost); }));
    m_settings.close();
    m_desk.say();
    expectInEditor(QStringLiteral("FirstSecond"));
    expectFailedCalls();
    fixPaths(QStringLiteral("/nowhere"), m_desk.home());
    EXPECT_EQ(Config::file().read().source, KeptFile::Source::file);
    EXPECT_EQ(Config::load().model, QStringLiteral("starter"));
    EXPECT_EQ(Config::load().dictateEnterChords, std::vector<std::int64_t>{5});
}

INSTANTIATE_TEST_SUITE_P(
    The, ASettingOnAFailingDisk,
    testing::Values(Failing{"settingsCanNeverBeWritten", settings, write, always},
                    Failing{"settingsCannotBeWrittenOnce", settings, write, QStringLiteral("2")},
                    Failing{"copyCanNeverBeOpened", copiesOfSettings, open, always},
                    Failing{"copyCanNeverBeMoved", settings, move, always}),
    [](const auto& row) { return row.param.description; });

/// What is said lies on a disk of its own, so that it is copied when it is to be kept.
class AFailedDictationOnAFailingDisk : public OnAFailingDisk {};

TEST_P(AFailedDictationOnAFailingDisk, costsNothingOfTheNextOneWhere) {
    std::optional<SmallDisk> otherDisk;
    if (GetParam().files == partOfFailed)
        otherDisk.emplace(m_desk.dataFile(QStringLiteral("tmp")), "size=4m");
    std::vector<RawAnswer> answers(4, RawAnswer::status(500));
    answers.push_back(RawAnswer::ok("words"));
    m_desk.startSayloft(answers);
    m_desk.say();
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
    EXPECT_TRUE(m_desk.sayloft().waitForLog(
        QStringLiteral("the recording could not be kept: No space left on device")));
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    EXPECT_FALSE(m_tray.property(QStringLiteral("ToolTip")).contains(QStringLiteral("kept in")));
    for (const QString& file : failed + partOfFailed)
        EXPECT_FALSE(QFileInfo::exists(m_desk.home() + QLatin1Char('/') + file));
    expectFailedCalls();
}

INSTANTIATE_TEST_SUITE_P(The, AFailedDictationOnAFailingDisk,
                         testing::Values(Failing{"soundCannotBeMoved", recording, move, always},
                                         Failing{"copyCannotBeOpened", partOfFailed, open, always},
                                         Failing{"copyCannotBeWritten", partOfFailed, write,
                                                 always}),
                         [](const auto& row) { return row.param.description; });

class AStartAtLoginOnAFailingDisk : public ASettingOnAFailingDisk {};

TEST_P(AStartAtLoginOnAFailingDisk, isNotPromisedWhere) {
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_settings.open();
    m_settings.press(SettingsSwitch::login);
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("login item toggle failed: ")));
    EXPECT_TRUE(waitUntil([this] { return !m_settings.isOn(SettingsSwitch::login); }));
    EXPECT_TRUE(QDir(m_desk.home() + QStringLiteral("/.config/autostart")).isEmpty());
    expectFailedCalls();
}

INSTANTIATE_TEST_SUITE_P(The, AStartAtLoginOnAFailingDisk,
                         testing::Values(Failing{"entryCannotGetItsName", autostart,
                                                 QStringLiteral("linkat"), always}),
                         [](const auto& row) { return row.param.description; });

}  // namespace
}  // namespace sayloft::test
