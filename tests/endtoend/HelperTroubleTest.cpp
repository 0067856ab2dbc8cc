// SPDX-License-Identifier: MIT
// The program with a speech helper that dies or hangs.
#include "helper/tests/SpeechSamples.h"
#include "tests/endtoend/Dictation.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QElapsedTimer>
#include <QFile>

#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using test::RawAnswer;

class HelperTrouble : public test::Dictation {
protected:
    void expectFailedWithItsSoundKept() {
        EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED"), 60s));
        EXPECT_TRUE(
            m_client.tooltipSays(QStringLiteral("recording kept in ~/.sayloft/last-failed.wav")));
        EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("speech helper has ended")));
        expectSoundIn(test::readSound(m_desk.dataFile(QStringLiteral("last-failed.wav"))));
    }

    /// Between the release and the paste there is nothing but the transcription.
    void sayAndWaitForTheEndOfTheRecording() {
        m_desk.say();
        ASSERT_TRUE(test::waitUntil([this] { return m_desk.openMicrophones() == 0; }));
    }

    /// The helper may take the 3 s that it has to end; a transcription may not take its 30 s.
    void expectPromptEnd() {
        QElapsedTimer timer;
        timer.start();
        m_desk.sayloft().program().signal(SIGTERM);
        ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
        EXPECT_LT(timer.elapsed(), 5000);
        EXPECT_EQ(m_desk.sayloft().program().exitCode(), 0);
        EXPECT_FALSE(test::helperRuns());
    }

    void expectNoSoundIsSentTo(const test::RawHttpServer& stranger) {
        m_desk.say();
        EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
        EXPECT_TRUE(m_desk.sayloft().log().contains(
            QStringLiteral("another program listens at port 8090 — no sound was sent to it")));
        for (const QByteArray& request : stranger.requests())
            EXPECT_TRUE(request.startsWith("GET / ")) << request.left(200).toStdString();
        EXPECT_EQ(m_desk.editor().textOnce({}), QString());
        EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("port 8090 taken")));
    }

    const test::TrayClient m_client{m_desk.bus()};
};

TEST_F(HelperTrouble, isNotMadeByWhatTheHelperPrints) {
    m_desk.startSayloft();
    const QString files =
        QStringLiteral("/proc/") + QString::fromUtf8(test::helpers()) + QStringLiteral("/fd/");
    EXPECT_EQ(QFile::symLinkTarget(files + QLatin1Char('1')), QStringLiteral("/dev/null"));
    EXPECT_EQ(QFile::symLinkTarget(files + QLatin1Char('2')), QStringLiteral("/dev/null"));
}

TEST_F(HelperTrouble, thatItPrintsWithoutEndDoesNotDisturbADictation) {
    m_desk.startSayloftWithHelper("print");
    m_desk.say();
    expectInEditor(QStringLiteral("ok"));
}

/// A helper whose answers to a recording do not end.
class FloodingHelper : public HelperTrouble, public testing::WithParamInterface<const char*> {
protected:
    FloodingHelper() { test::writeFile(m_sign, {}); }

    [[nodiscard]] long peakKilobytes() {
        return test::peakKilobytesOf(m_desk.sayloft().program().pid());
    }

    /// In kilobytes. A sanitizer holds what was given back for a while; a flood brings gigabytes.
    static constexpr long permitted = 64000;
    const QString m_sign = m_desk.dataFile(QStringLiteral("models/starter-en-us.model.flood"));
};

TEST_P(FloodingHelper, failsTheDictationOnlyAndFillsNoMemory) {
    m_desk.startSayloftWithHelper(GetParam());
    const long before = peakKilobytes();
    m_desk.say();
    ASSERT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
    EXPECT_LT(peakKilobytes(), before + permitted);
    EXPECT_EQ(m_desk.history(), QByteArray());
    QFile::remove(m_sign);
    m_desk.say();
    expectInEditor(QStringLiteral("ok"));
}

INSTANTIATE_TEST_SUITE_P(With, FloodingHelper,
                         testing::Values("flood-line", "flood-head", "flood-body"),
                         [](const auto& row) { return std::string(row.param).substr(6); });

TEST_F(HelperTrouble, aKilledHelperFailsTheDictationOnly) {
    m_desk.startSayloft();
    test::signalHelper(SIGKILL);
    m_desk.say();
    expectFailedWithItsSoundKept();
    EXPECT_EQ(m_desk.editor().textOnce({}), QString());
    EXPECT_TRUE(m_desk.sayloft().program().isRunning());
    expectPromptEnd();
}

TEST_F(HelperTrouble, aHelperKilledWhileItTranscribesFailsTheDictationOnly) {
    m_desk.startSayloft();
    test::signalHelper(SIGSTOP);
    sayAndWaitForTheEndOfTheRecording();
    test::signalHelper(SIGKILL);
    expectFailedWithItsSoundKept();
    EXPECT_TRUE(m_desk.sayloft().program().isRunning());
    expectPromptEnd();
}

TEST_F(HelperTrouble, noSoundGoesToAStrangerThatHasThePortBeforeTheStart) {
    const test::RawHttpServer stranger({RawAnswer::ok("I heard you")}, 8090);
    m_desk.startSayloft();
    expectNoSoundIsSentTo(stranger);
}

TEST_F(HelperTrouble, noSoundGoesToAStrangerThatTakesThePortOfAKilledHelper) {
    m_desk.startSayloft();
    test::signalHelper(SIGKILL);
    ASSERT_TRUE(test::waitUntil([] { return !test::helperRuns(); }));
    const test::RawHttpServer stranger({RawAnswer::ok("I heard you")}, 8090);
    expectNoSoundIsSentTo(stranger);
}

TEST_F(HelperTrouble, aFrozenHelperDelaysTheTextUntilItGoesOn) {
    const QTemporaryDir directory;
    const auto sample = helper::test::speak(directory, "the weather is nice today");
    m_desk.startSayloft();
    test::signalHelper(SIGSTOP);
    m_desk.say(sample.file);
    test::turnEventLoopFor(2s);
    EXPECT_EQ(m_desk.transcripts(), QStringList());
    test::signalHelper(SIGCONT);
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    const QString words = QString::fromStdString(sample.words);
    EXPECT_EQ(m_desk.editor().textOnce(words), words);
}

TEST_F(HelperTrouble, aFrozenHelperDoesNotDelayTheEnd) {
    m_desk.startSayloft();
    test::signalHelper(SIGSTOP);
    sayAndWaitForTheEndOfTheRecording();
    EXPECT_FALSE(m_desk.sayloft().log().contains(QStringLiteral("TRANSCRIBE FAILED")));
    expectPromptEnd();
}

TEST_F(HelperTrouble, aTranscriptionThatHangsDoesNotDelayTheEnd) {
    m_desk.startSayloft({RawAnswer::hang()});
    m_desk.say();
    ASSERT_TRUE(test::waitUntil([this] { return m_desk.recordings().size() == 1; }));
    expectPromptEnd();
}

TEST_F(HelperTrouble, theEndInTheMiddleOfARecordingIsPrompt) {
    m_desk.startSayloft();
    m_desk.hold();
    expectPromptEnd();
    EXPECT_EQ(m_desk.openMicrophones(), 0);
}

}  // namespace
}  // namespace sayloft
