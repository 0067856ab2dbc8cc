// SPDX-License-Identifier: MIT
// Dictations without a microphone, with a sound server that dies, and with next to no sound.
#include "tests/endtoend/Dictation.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

#include <chrono>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

TEST_F(Dictation, withoutAnyMicrophoneIsSilentAndTheNextOneWorks) {
    m_desk.room().removeMicrophone(QStringLiteral("builtin"));
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_desk.press();
    ASSERT_TRUE(m_desk.sayloft().waitForLog(
        QStringLiteral("recording @ 0Hz (built-in mic: false)\nno input format\n")));
    turnEventLoopFor(500ms);
    EXPECT_EQ(m_desk.openMicrophones(), 0);
    m_desk.letGo();
    turnEventLoopFor(500ms);
    EXPECT_TRUE(m_desk.recordings().empty());
    EXPECT_FALSE(m_desk.sayloft().log().contains(QStringLiteral("TRANSCRI")));

    m_desk.room().addMicrophone(QStringLiteral("usb"),
                                {{QStringLiteral("device.bus"), QStringLiteral("usb")}});
    m_desk.room().setDefaultMicrophone(QStringLiteral("usb"));
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    expectWholeSoundInLastRecording();
}

TEST_F(Dictation, withoutAnyMicrophoneIsToldInTheTooltipUntilThereIsOne) {
    const TrayClient tray(m_desk.bus());
    const QString noMicrophone = QStringLiteral("no microphone");
    m_desk.room().removeMicrophone(QStringLiteral("builtin"));
    m_desk.startSayloft({RawAnswer::ok("words")});
    m_desk.press();
    EXPECT_TRUE(tray.tooltipSays(noMicrophone));
    m_desk.letGo();
    m_desk.room().addMicrophone(QStringLiteral("usb"), {});
    EXPECT_TRUE(tray.tooltipStopsSaying(noMicrophone));
}

/// Two fragments of 20 ms are lost with the sound server.
constexpr std::size_t onItsWay = 640;

/// A dictation whose sound server dies when everything has been said; the chord is still held.
/// Returns how long the microphone can have been open at most.
std::chrono::milliseconds speakUntilTheSoundServerDies(DictationDesk& desk) {
    QElapsedTimer sincePress;
    sincePress.start();
    desk.hold();
    desk.room().play(desk.soundFile());
    desk.room().kill();
    return std::chrono::milliseconds(sincePress.elapsed() + 1);
}

void startTheSoundServerAnew(DictationDesk& desk) {
    desk.room().restart();
    desk.waitForSound();
}

TEST_F(Dictation, worksAfterTheSoundServerWasStartedAnew) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    m_desk.room().kill();
    startTheSoundServerAnew(m_desk);
    expectSecondOneWorks();
}

TEST_F(Dictation, keepsWhatWasSaidBeforeTheSoundServerDied) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    speakUntilTheSoundServerDies(m_desk);
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectSoundIn(m_desk.recordings().front(), swallowedAtTheStart + onItsWay);
    startTheSoundServerAnew(m_desk);
    expectSecondOneWorks();
}

TEST_F(Dictation, isShorterWhenTheSoundServerIsStartedAnewMeanwhile) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    const std::chrono::milliseconds open = speakUntilTheSoundServerDies(m_desk);
    startTheSoundServerAnew(m_desk);
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    const Samples recording = m_desk.recordings().front();
    expectSoundIn(recording, swallowedAtTheStart + onItsWay);
    EXPECT_LE(recording.size(), static_cast<std::size_t>(16 * open.count()));
    expectSecondOneWorks();
}

TEST_F(Dictation, ofATapIsAShortRecordingAndTheNextOneWorks) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.press();
    turnEventLoopFor(30ms);
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    ASSERT_EQ(m_desk.recordings().size(), 1U);
    EXPECT_LT(m_desk.recordings().front().size(), 16000U);
    expectSecondOneWorks();
}

}  // namespace
}  // namespace sayloft::test
