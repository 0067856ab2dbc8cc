// SPDX-License-Identifier: MIT
// The real program on a disk that is full or read-only, and with settings that cannot be read.
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/BusMonitor.h"
#include "tests/support/NotificationDaemon.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>

#include <linux/capability.h>
#include <sys/prctl.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

class DiskTrouble : public Dictation {
protected:
    void startOnSmallDisk() {
        m_disk.emplace(m_desk.home() + QStringLiteral("/.sayloft"), "size=2m");
        m_desk.startSayloft({RawAnswer::ok("words")});
    }

    [[nodiscard]] bool tooltipSaysNothing() const {
        return m_client.tooltipSays(QStringLiteral(", '')"));
    }

    NotificationDaemon m_daemon{Notifying::dunst, m_desk.display(), m_desk.bus()};
    BusMonitor m_messages{m_desk.bus(), QStringLiteral("org.freedesktop.Notifications")};
    TrayClient m_client{m_desk.bus()};
    std::optional<SmallDisk> m_disk;
};

TEST_F(DiskTrouble, thatThereIsNoRoomIsToldUntilThereIsSomeAndCostsNoWords) {
    startOnSmallDisk();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    m_disk->fill();
    m_desk.say();
    expectInEditor(QStringLiteral("wordswords"));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("disk full")));
    EXPECT_TRUE(m_messages.hears("The disk is full"));
    m_disk->makeRoom();
    m_desk.say();
    expectInEditor(QStringLiteral("wordswordswords"));
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("'Sayloft: ready'")));
    EXPECT_FALSE(m_client.property(QStringLiteral("ToolTip")).contains(QStringLiteral("full")));
    EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["words","words","words"])"; }));
}

TEST_F(DiskTrouble, thatTheRoomEndsInADictationIsToldAfterItAndCostsNoWords) {
    startOnSmallDisk();
    m_desk.hold();
    m_disk->fill();
    m_desk.room().play(m_desk.soundFile());
    m_desk.letGo();
    expectInEditor(QStringLiteral("words"));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("disk full")));
}

// Its sound is kept, and with it goes the file that the next one would have been written to.
TEST_F(DiskTrouble, ofADictationThatFailsOnAFullDiskCostsNoWordsOfTheNextOnes) {
    m_disk.emplace(m_desk.home() + QStringLiteral("/.sayloft"), "size=2m");
    m_desk.startSayloft({RawAnswer::status(500), RawAnswer::status(500), RawAnswer::status(500),
                         RawAnswer::status(500), RawAnswer::ok("words")});
    m_desk.say();
    ASSERT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
    m_disk->fill();
    EXPECT_EQ(readFile(m_desk.lastRecording()).size(), 0);
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    expectWholeSoundInLastRecording();
    m_disk->fill();
    m_desk.say();
    expectInEditor(QStringLiteral("wordswords"));
    expectWholeSoundInLastRecording();
}

TEST_F(DiskTrouble, ofAFullDiskLetsTheHistoryBeCleared) {
    m_disk.emplace(m_desk.home() + QStringLiteral("/.sayloft"), "size=2m");
    writeFile(m_desk.dataFile(QStringLiteral("history.json")), R"(["older"])");
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_disk->fill();
    m_desk.keyboard().press(TestKeyboard::shiftLeft);
    m_client.click(QStringLiteral("Clear History"));
    EXPECT_TRUE(
        waitUntil([this] { return m_client.labels().contains(QStringLiteral("(empty)")); }));
    m_desk.keyboard().release(TestKeyboard::shiftLeft);
    EXPECT_TRUE(waitUntil([this] { return m_desk.history().trimmed() == "[]"; }));
}

/// A setting is changed where there is no room for it.
class ASettingOnAFullDisk : public DiskTrouble {
protected:
    void change() {
        startOnSmallDisk();
        const QByteArray before = settings();
        m_settings.open();
        m_disk->fill();
        ASSERT_TRUE(m_settings.isOn(SettingsSwitch::boost));
        m_settings.press(SettingsSwitch::boost);
        ASSERT_TRUE(waitUntil([this] { return !m_settings.isOn(SettingsSwitch::boost); }));
        EXPECT_EQ(settings(), before);
        m_disk->makeRoom();
    }

    [[nodiscard]] QByteArray settings() const {
        return readFile(m_desk.dataFile(QStringLiteral("config.json")));
    }

    [[nodiscard]] bool isSaved() const { return settings().contains(R"("boostMic":false)"); }

    const SettingsSwitch m_settings{m_desk};
};

TEST_F(ASettingOnAFullDisk, isSavedAfterTheNextDictationThatFindsRoom) {
    ASSERT_NO_FATAL_FAILURE(change());
    EXPECT_FALSE(isSaved());
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_TRUE(waitUntil([this] { return isSaved(); })) << settings().toStdString();
}

TEST_F(ASettingOnAFullDisk, isSavedAtTheEndWhereThereIsRoomByThen) {
    ASSERT_NO_FATAL_FAILURE(change());
    EXPECT_FALSE(isSaved());
    m_desk.sayloft().program().signal(SIGTERM);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    EXPECT_TRUE(isSaved()) << settings().toStdString();
}

class AStartAtLoginOnAFullDisk : public DiskTrouble {
protected:
    const SettingsSwitch m_settings{m_desk};
};

TEST_F(AStartAtLoginOnAFullDisk, isNotPromised) {
    const QString folder = m_desk.home() + QStringLiteral("/.config/autostart");
    m_disk.emplace(folder, "size=1m");
    m_disk->fill();
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_settings.open();
    m_settings.press(SettingsSwitch::login);
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("login item toggle failed: ")));
    EXPECT_TRUE(waitUntil([this] { return !m_settings.isOn(SettingsSwitch::login); }));
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), QStringList{QStringLiteral("filler")});
}

TEST_F(DiskTrouble, thatTheDiskIsReadOnlyIsToldUntilItIsNot) {
    startOnSmallDisk();
    m_disk->makeReadOnly();
    m_desk.press();
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("~/.sayloft not writable")));
    EXPECT_TRUE(m_messages.hears("Sayloft cannot write to its folder"));
    EXPECT_EQ(m_desk.openMicrophones(), 0);
    m_desk.letGo();
    m_disk->makeWritable();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    // Of the one before there was nothing to be sent.
    EXPECT_EQ(m_desk.recordings().size(), 1U);
    EXPECT_TRUE(tooltipSaysNothing());
}

TEST_F(DiskTrouble, ofAReadOnlyHomeIsToldAtTheStart) {
    m_disk.emplace(m_desk.home(), "size=2m");
    writeConfig(m_desk.home(), R"({"model":"starter"})");
    m_disk->makeReadOnly();
    const SayloftProgram sayloft(m_desk.home(), m_desk.environment());
    EXPECT_TRUE(m_client.tooltipSays(QStringLiteral("~/.sayloft not writable")));
    EXPECT_TRUE(m_messages.hears("Sayloft cannot write to its folder"));
}

class UnreadableSettings : public DiskTrouble {
protected:
    void expectTold(const QString& inTheLog) {
        const SayloftProgram sayloft(m_desk.home(), m_desk.environment());
        EXPECT_TRUE(sayloft.waitForLog(inTheLog)) << sayloft.log().toStdString();
        EXPECT_TRUE(m_messages.hears("Sayloft cannot read its settings"));
        EXPECT_TRUE(m_client.property(QStringLiteral("ToolTip"))
                        .contains(QStringLiteral("speech model missing")));
    }

    const QString m_config = m_desk.dataFile(QStringLiteral("config.json"));
};

TEST_F(UnreadableSettings, areToldWhereADirectoryIsInTheirPlace) {
    QDir().mkpath(m_config);
    expectTold(QStringLiteral("config.json cannot be read\n"));
}

TEST_F(UnreadableSettings, areToldWhereTheyMayNotBeRead) {
    writeConfig(m_desk.home(), "{}");
    QFile::setPermissions(m_config, {});
    // What is started from here on has no right to read everything, not even as root.
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
    expectTold(QStringLiteral("config.json cannot be read\n"));
}

TEST_F(UnreadableSettings, areToldWhereTheyLostTheirEndWhenTheyWereChanged) {
    writeConfig(m_desk.home(), R"({"playSounds":true,"model":"multi)");
    writeFile(m_config + QStringLiteral(".saved"), R"({"model":"multilingual"})");
    expectTold(
        QStringLiteral("config.json was changed: that text is kept in config.json.broken\n"));
}

TEST_F(UnreadableSettings, areToldAndKeptWhereTheyAreNoSettings) {
    writeConfig(m_desk.home(), "model = starter");
    expectTold(
        QStringLiteral("config.json is damaged: not read, its text is kept in "
                       "config.json.broken\n"));
    EXPECT_EQ(readFile(m_config + QStringLiteral(".broken")), "model = starter");
}

}  // namespace
}  // namespace sayloft::test
