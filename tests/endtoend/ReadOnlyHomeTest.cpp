// SPDX-License-Identifier: MIT
// The real program in a home directory that cannot be written from the start, and later can.
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <chrono>
#include <optional>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

class AReadOnlyHome : public Dictation {
protected:
    void startSayloft() {
        m_disk.emplace(m_desk.home(), "size=4m");
        m_desk.prepare({RawAnswer::ok("words")});
        m_disk->makeReadOnly();
        m_desk.startPreparedWithoutLog();
    }

    void holdInVain() {
        m_desk.press();
        EXPECT_TRUE(
            m_tray.tooltipSays(QStringLiteral("'Sayloft: listening', '~/.sayloft not writable'")));
        EXPECT_EQ(m_desk.openMicrophones(), 0);
        m_desk.letGo();
        EXPECT_TRUE(
            m_tray.tooltipSays(QStringLiteral("'Sayloft: ready', '~/.sayloft not writable'")));
    }

    void quit() {
        m_tray.click(QStringLiteral("Quit"));
        ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    }

    const TrayClient m_tray{m_desk.bus()};
    std::optional<SmallDisk> m_disk;
};

TEST_F(AReadOnlyHome, isToldWhereTheChordIsHeldAndNothingIsRecorded) {
    startSayloft();
    holdInVain();
    EXPECT_TRUE(m_desk.recordings().empty());
    EXPECT_EQ(m_desk.editor().textOnce({}), QString());
}

TEST_F(AReadOnlyHome, isForgottenOnceItCanBeWritten) {
    startSayloft();
    holdInVain();
    EXPECT_EQ(m_desk.sayloft().log(), QString());
    m_disk->makeWritable();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    expectWholeSoundInLastRecording();
    EXPECT_TRUE(m_tray.tooltipSays(QStringLiteral("'Sayloft: ready'")));
    EXPECT_TRUE(m_tray.tooltipStopsSaying(QStringLiteral("not writable")));
    EXPECT_EQ(m_desk.transcripts(), QStringList{QStringLiteral("words")});
    EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["words"])"; }));
}

TEST_F(AReadOnlyHome, letsASettingCountAndSavesItOnceItCanBeWritten) {
    const SettingsSwitch settings(m_desk);
    startSayloft();
    settings.open();
    ASSERT_TRUE(settings.isOn(SettingsSwitch::boost));
    settings.press(SettingsSwitch::boost);
    settings.close();
    settings.open();
    EXPECT_TRUE(waitUntil([&] { return !settings.isOn(SettingsSwitch::boost); }));
    settings.close();
    const auto isSaved = [this] {
        return readFile(m_desk.dataFile(QStringLiteral("config.json")))
            .contains(R"("boostMic":false)");
    };
    EXPECT_FALSE(isSaved());
    m_disk->makeWritable();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    EXPECT_TRUE(waitUntil(isSaved));
}

TEST_F(AReadOnlyHome, isNoErrorAtTheEnd) {
    startSayloft();
    holdInVain();
    ASSERT_NO_FATAL_FAILURE(quit());
    EXPECT_EQ(m_desk.sayloft().program().exitCode(), 0);
    EXPECT_FALSE(helperRuns());
}

TEST_F(AReadOnlyHome, costsNothingOfTheNextStartThatFindsItWritable) {
    startSayloft();
    ASSERT_NO_FATAL_FAILURE(quit());
    m_disk->makeWritable();
    m_desk.prepare({RawAnswer::ok("words")});
    m_desk.startPrepared();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    EXPECT_TRUE(m_tray.tooltipStopsSaying(QStringLiteral("not writable")));
}

}  // namespace
}  // namespace sayloft::test
