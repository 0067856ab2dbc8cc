// SPDX-License-Identifier: MIT
#include "app/TroubleWatch.h"

#include "models/Paths.h"
#include "storage/Config.h"
#include "tests/support/FakePlatform.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QHostAddress>
#include <QTcpServer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

const QString noTray = QStringLiteral("no place for the icon");

class TheTroubleWatch : public testing::Test {
protected:
    TheTroubleWatch() {
        m_audio.defaultFormat = {.sampleRate = 48000, .channels = 1};
        m_watch.onReason = [this] { m_reasons.append(m_watch.reason()); };
    }

    /// A start of the server with all that it needs.
    void start() {
        const QString model = m_home.path() + QStringLiteral("/model");
        test::writeFile(PARAKEET_SERVER_BIN, "helper");
        test::writeFile(model, "model");
        m_watch.serverStarts(model);
    }

    /// Everything that is put off has happened afterwards.
    static void letGracePass() { test::turnEventLoopFor(60ms); }

    test::TempHome m_home;
    test::FakeNotifier m_notifier;
    test::FakeAudioInput m_audio;
    test::FakeTrayItem m_tray;
    QStringList m_reasons;
    TroubleWatch m_watch{m_notifier, m_audio, m_tray, 20ms};
};

TEST_F(TheTroubleWatch, hasNothingToSayWhenAllIsThere) {
    m_watch.launched();
    m_watch.keysWatched(true);
    letGracePass();
    EXPECT_EQ(m_watch.reason(), QString());
    EXPECT_TRUE(m_reasons.isEmpty());
    EXPECT_EQ(m_notifier.shown, 0);
}

TEST_F(TheTroubleWatch, seesThatTheHelperIsMissing) {
    m_watch.serverStarts(m_home.path());
    EXPECT_EQ(m_watch.reason(), QStringLiteral("speech helper missing"));
}

TEST_F(TheTroubleWatch, seesThatTheModelIsMissingAndThatItHasCome) {
    test::writeFile(PARAKEET_SERVER_BIN, "helper");
    const QString model = m_home.path() + QStringLiteral("/model");
    m_watch.serverStarts(model);
    EXPECT_EQ(m_watch.reason(), QStringLiteral("speech model missing"));
    test::writeFile(model, "model");
    m_watch.serverStarts(model);
    EXPECT_EQ(m_watch.reason(), QString());
}

TEST_F(TheTroubleWatch, seesThatTheHelperHasEnded) {
    m_watch.serverGone();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("speech helper has ended"));
    start();
    EXPECT_EQ(m_watch.reason(), QString());
}

TEST_F(TheTroubleWatch, seesThatSomebodyElseHasThePort) {
    QTcpServer stranger;
    ASSERT_TRUE(stranger.listen(QHostAddress::LocalHost, 8090));
    m_watch.serverGone();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("port 8090 taken"));
    start();
    EXPECT_EQ(m_watch.reason(), QString());
}

TEST_F(TheTroubleWatch, hearsOfAStrangerAtThePort) {
    m_watch.strangerAtPort();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("port 8090 taken"));
    start();
    EXPECT_EQ(m_watch.reason(), QString());
}

TEST_F(TheTroubleWatch, seesThatTheKeysAreOutOfReach) {
    m_watch.keysWatched(false);
    EXPECT_EQ(m_watch.reason(), QStringLiteral("keyboard out of reach"));
}

TEST_F(TheTroubleWatch, seesAtADictationThatThereIsNoSoundServer) {
    m_audio.answer = AudioInput::Authorization::notDetermined;
    m_watch.dictationBegins();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("no sound server"));
    m_audio.answer = AudioInput::Authorization::authorized;
    EXPECT_TRUE(test::waitUntil([this] { return m_watch.reason().isEmpty(); }));
}

TEST_F(TheTroubleWatch, seesThatTheSoundServerRefusesUntilItLetsUsIn) {
    m_audio.answer = AudioInput::Authorization::denied;
    m_watch.launched();
    ASSERT_TRUE(test::waitUntil(
        [this] { return m_watch.reason() == QStringLiteral("sound server refuses"); }));
    m_audio.answer = AudioInput::Authorization::authorized;
    EXPECT_TRUE(test::waitUntil([this] { return m_watch.reason().isEmpty(); }));
}

TEST_F(TheTroubleWatch, seesAtADictationThatThereIsNoMicrophoneUntilThereIsOne) {
    m_audio.defaultFormat = {};
    m_watch.dictationBegins();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("no microphone"));
    m_audio.deviceList = {{.id = 1}};
    EXPECT_TRUE(test::waitUntil([this] { return m_watch.reason().isEmpty(); }));
}

TEST_F(TheTroubleWatch, seesAfterADictationThatTheMicrophoneHasGone) {
    m_watch.dictationBegins();
    m_audio.defaultFormat = {};
    m_watch.dictationEnded();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("no microphone"));
}

TEST_F(TheTroubleWatch, waitsForATrayThatComesLate) {
    m_tray.isThere = false;
    m_watch.launched();
    EXPECT_TRUE(m_reasons.isEmpty());
    m_tray.setShown(true);
    letGracePass();
    EXPECT_TRUE(m_reasons.isEmpty());
}

TEST_F(TheTroubleWatch, seesThatThereIsNoTrayUntilThereIsOne) {
    m_tray.isThere = false;
    m_watch.launched();
    ASSERT_TRUE(test::waitUntil([this] { return m_watch.reason() == noTray; }));
    m_tray.setShown(true);
    EXPECT_EQ(m_watch.reason(), QString());
}

TEST_F(TheTroubleWatch, tellsOnlyOnceInManyStartsThatThereIsNoTray) {
    m_tray.isThere = false;
    m_watch.launched();
    ASSERT_TRUE(test::waitUntil([this] { return m_watch.reason() == noTray; }));
    EXPECT_EQ(m_notifier.shown, 1);
    TroubleWatch nextStart(m_notifier, m_audio, m_tray, 20ms);
    nextStart.launched();
    letGracePass();
    EXPECT_EQ(nextStart.reason(), QString());
    EXPECT_EQ(m_notifier.shown, 1);
    EXPECT_TRUE(nextStart.trayMissing());
}

TEST_F(TheTroubleWatch, tellsAgainThatThereIsNoTrayWhereThereWasOneMeanwhile) {
    m_tray.isThere = false;
    m_watch.launched();
    ASSERT_TRUE(test::waitUntil([this] { return m_notifier.shown == 1; }));
    m_tray.setShown(true);
    m_tray.isThere = false;
    TroubleWatch nextStart(m_notifier, m_audio, m_tray, 20ms);
    nextStart.launched();
    EXPECT_TRUE(test::waitUntil([this] { return m_notifier.shown == 2; }));
}

TEST_F(TheTroubleWatch, goesOnSayingThatThereIsNoTray) {
    m_tray.isThere = false;
    m_watch.launched();
    m_tray.setShown(false);
    ASSERT_TRUE(test::waitUntil([this] { return m_watch.reason() == noTray; }));
    letGracePass();
    EXPECT_EQ(m_watch.reason(), noTray);
}

TEST_F(TheTroubleWatch, waitsForATrayThatCrashed) {
    m_watch.launched();
    letGracePass();
    m_tray.setShown(false);
    EXPECT_EQ(m_watch.reason(), QString());
    EXPECT_TRUE(test::waitUntil([this] { return m_watch.reason() == noTray; }));
}

TEST_F(TheTroubleWatch, seesThatTheFolderRefusesUntilItDoesNot) {
    test::writeFile(DATA_DIR, "a file where the folder should be");
    m_watch.launched();
    ASSERT_TRUE(test::waitUntil(
        [this] { return m_watch.reason() == QStringLiteral("~/.sayloft not writable"); }));
    QFile::remove(DATA_DIR);
    m_watch.dictationBegins();
    EXPECT_TRUE(test::waitUntil([this] { return m_watch.reason().isEmpty(); }));
    EXPECT_TRUE(QDir(TEMP_DIR).isEmpty());
}

TEST_F(TheTroubleWatch, seesThatTheSettingsWereNotReadWhateverIsSavedLater) {
    m_watch.settingsRead(false);
    EXPECT_EQ(m_watch.reason(), QStringLiteral("settings unreadable"));
    Config().save();
    m_watch.dictationEnded();
    letGracePass();
    EXPECT_EQ(m_watch.reason(), QStringLiteral("settings unreadable"));
}

TEST_F(TheTroubleWatch, namesTheMostSevereCause) {
    m_audio.answer = AudioInput::Authorization::notDetermined;
    m_watch.dictationBegins();
    m_watch.keysWatched(false);
    EXPECT_THAT(m_reasons, testing::ElementsAre(QStringLiteral("no sound server"),
                                                QStringLiteral("keyboard out of reach")));
}

}  // namespace
}  // namespace sayloft
