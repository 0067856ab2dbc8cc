// SPDX-License-Identifier: MIT
// What happens around a dictation while it is under way: services that die, a computer that sleeps.
#include "tests/endtoend/Dictation.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <ostream>
#include <string>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

using Interruptions = Dictation;

struct Happening {
    std::string description;
    std::function<void(DictationDesk&)> happen;
    std::function<void(DictationDesk&)> goOn;  ///< so that the next dictation can work
};

void PrintTo(const Happening& happening, std::ostream* out) {
    *out << happening.description;
}

class InterruptedTranscription : public Dictation, public testing::WithParamInterface<Happening> {};

TEST_P(InterruptedTranscription, bringsItsTextAndTheNextDictationWorks) {
    m_desk.startSayloft({RawAnswer::slowly("First", 2s), RawAnswer::ok("Second")});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    GetParam().happen(m_desk);
    EXPECT_TRUE(m_desk.transcripts().isEmpty());
    GetParam().goOn(m_desk);
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectInEditor(QStringLiteral("First"));
    m_desk.waitForSound();
    expectSecondOneWorks();
}

INSTANTIATE_TEST_SUITE_P(
    By, InterruptedTranscription,
    testing::Values(
        Happening{"aNewSoundServer", [](DictationDesk& desk) { desk.room().kill(); },
                  [](DictationDesk& desk) { desk.room().restart(); }},
        Happening{
            "aVanishingMicrophone",
            [](DictationDesk& desk) { desk.room().removeMicrophone(QStringLiteral("builtin")); },
            [](DictationDesk& desk) {
                desk.room().addMicrophone(QStringLiteral("usb"), {});
                desk.room().setDefaultMicrophone(QStringLiteral("usb"));
            }},
        Happening{"anEndOfTheSessionBus", [](DictationDesk& desk) { desk.bus().kill(); },
                  [](DictationDesk& /*desk*/) {}},
        Happening{"aSleep",
                  [](DictationDesk& desk) {
                      desk.sayloft().program().signal(SIGSTOP);
                      turnEventLoopFor(3s);
                  },
                  [](DictationDesk& desk) { desk.sayloft().program().signal(SIGCONT); }}),
    [](const auto& row) { return row.param.description; });

/// The microphone goes when everything has been said; the chord is let go after that.
void speakUntilTheMicrophoneVanishes(DictationDesk& desk) {
    desk.hold();
    desk.room().play(desk.soundFile());
    desk.room().removeMicrophone(QStringLiteral("builtin"));
    desk.letGo();
}

TEST_F(Interruptions, ofTheMicrophoneLeaveWhatWasSaidBefore) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    speakUntilTheMicrophoneVanishes(m_desk);
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_TRUE(
        m_desk.sayloft().log().contains(QStringLiteral("\nrecording broke off: Entity killed\n")))
        << m_desk.sayloft().log().toStdString();
    // A fragment of 20 ms may be on its way.
    expectSoundIn(m_desk.recordings().front(), 2 * swallowedAtTheStart + swallowedAtTheStart);
    m_desk.room().addMicrophone(QStringLiteral("usb"), {});
    m_desk.room().setDefaultMicrophone(QStringLiteral("usb"));
    expectSecondOneWorks();
}

TEST_F(Interruptions, ofTheMicrophoneStandInTheTooltipUntilThereIsOneAgain) {
    const TrayClient tray(m_desk.bus());
    const QString noMicrophone = QStringLiteral("no microphone");
    m_desk.startSayloft({RawAnswer::slowly("First", 1s)});
    // By then it has looked for microphones by itself, as it does once after the start.
    ASSERT_TRUE(tray.tooltipSays(QStringLiteral("no place for the icon")));
    speakUntilTheMicrophoneVanishes(m_desk);
    EXPECT_TRUE(tray.tooltipSays(noMicrophone));
    m_desk.room().addMicrophone(QStringLiteral("usb"), {});
    EXPECT_TRUE(tray.tooltipStopsSaying(noMicrophone));
}

TEST_F(Interruptions, ofTheSessionBusWhileTheChordIsHeldLoseNothing) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.hold();
    m_desk.bus().kill();
    m_desk.room().play(m_desk.soundFile());
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectSoundIn(m_desk.recordings().front());
    expectSecondOneWorks();
}

TEST_F(Interruptions, ofTheSoundServerThatGoesOnLaterDoNotBlockTheProgram) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.hold();
    m_desk.room().play(m_desk.soundFile());
    m_desk.room().freeze();
    m_desk.letGo();
    EXPECT_TRUE(m_desk.waitForTranscripts(1));
    m_desk.room().thaw();
    ASSERT_TRUE(waitUntil([this] { return m_desk.openMicrophones() == 0; }));
    expectSecondOneWorks();
}

TEST_F(Interruptions, bySleepWhileTheChordIsHeldLoseNothingOfWhatWasSaidBefore) {
    sleepThroughADictation(3s);
}

}  // namespace
}  // namespace sayloft::test
