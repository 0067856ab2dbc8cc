// SPDX-License-Identifier: MIT
// The sound server dies at a certain moment of a dictation.
#include "tests/endtoend/Dictation.h"
#include "tests/support/SelectionTestOwner.h"
#include "tests/support/WaitUntil.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

constexpr auto withCues = R"("playSounds":true)";

struct Moment {
    std::string description;
    std::function<void(DictationDesk&)> kill;
    QByteArray settings = {};
};

void PrintTo(const Moment& moment, std::ostream* out) {
    *out << moment.description;
}

class SoundServerKilled : public Dictation, public testing::WithParamInterface<Moment> {
protected:
    void startSayloft() {
        m_desk.startSayloft({RawAnswer::slowly("First", 1s), RawAnswer::ok("Second")},
                            GetParam().settings);
    }

    void startTheSoundServerAnew() {
        m_desk.room().restart();
        m_desk.waitForSound();
    }

    /// They are uploaded to every new server.
    [[nodiscard]] bool hasCues() {
        return waitUntil([this] {
            const QByteArray samples = m_desk.room().list(QStringLiteral("samples"));
            return samples.contains("sayloft-Pop") && samples.contains("sayloft-Tink");
        });
    }
};

// Before anything was said

/// Until a dictation has begun, and its recording failed or is waiting for the server.
void beginDictation(DictationDesk& desk) {
    desk.press();
    EXPECT_TRUE(desk.sayloft().waitForLog(QStringLiteral("recording @ ")));
}

void killBeforeTheChord(DictationDesk& desk) {
    desk.room().kill();
    beginDictation(desk);
}

/// What the program asks it for from the press on is never answered.
void killWhileItIsAsked(DictationDesk& desk) {
    desk.room().freeze();
    beginDictation(desk);
    desk.room().kill();
}

using SoundServerKilledEarly = SoundServerKilled;

TEST_P(SoundServerKilledEarly, costsThatDictationOnly) {
    startSayloft();
    GetParam().kill(m_desk);
    startTheSoundServerAnew();
    m_desk.room().play(m_desk.soundFile());
    m_desk.letGo();
    static const QRegularExpression reason(
        QStringLiteral("\n(no input format|engine start failed: .+)\n$"));
    EXPECT_TRUE(waitUntil([this] { return reason.match(m_desk.sayloft().log()).hasMatch(); }))
        << m_desk.sayloft().log().toStdString();
    EXPECT_TRUE(m_desk.recordings().empty());
    EXPECT_TRUE(hasCues());
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectWholeSoundInLastRecording();
    expectSecondOneWorks();
}

INSTANTIATE_TEST_SUITE_P(Moments, SoundServerKilledEarly,
                         testing::Values(Moment{"beforeTheChord", killBeforeTheChord},
                                         Moment{"whileTheMicrophoneIsOpened", killWhileItIsAsked},
                                         Moment{"atTheCueOfTheBeginning", killWhileItIsAsked,
                                                withCues}),
                         [](const auto& row) { return row.param.description; });

// After everything was said

void killBeforeTheLastWordHasCome(DictationDesk& desk) {
    const std::vector<SelectionTestOwner::Target> content{
        {.name = "UTF8_STRING", .data = "mine", .type = {}}};
    SelectionTestOwner clipboard(content);
    desk.hold();
    desk.room().play(desk.soundFile());
    const qsizetype before = clipboard.asked().size();
    desk.letGo();
    // That is what the program does next after the microphone was told to finish.
    EXPECT_TRUE(waitUntil([&] { return clipboard.asked().size() > before; }));
    desk.room().kill();
    EXPECT_TRUE(desk.sayloft().waitForLog(QStringLiteral("recording broke off: ")));
}

/// The target takes nothing before the server is dead.
void killWhileTheTextIsPasted(DictationDesk& desk) {
    desk.editor().program().signal(SIGSTOP);
    desk.say();
    EXPECT_TRUE(desk.waitForTranscripts(1));
    desk.room().kill();
    desk.editor().program().signal(SIGCONT);
}

/// It is asked for the cue, but never answers.
void killAtTheCueOfTheEnd(DictationDesk& desk) {
    desk.say();
    EXPECT_TRUE(waitUntil([&] { return desk.recordings().size() == 1; }));
    desk.room().freeze();
    EXPECT_TRUE(desk.transcripts().empty());
    EXPECT_TRUE(desk.waitForTranscripts(1));
    desk.room().kill();
}

using SoundServerKilledLate = SoundServerKilled;

TEST_P(SoundServerKilledLate, losesNothingOfWhatWasSaid) {
    startSayloft();
    GetParam().kill(m_desk);
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectInEditor(QStringLiteral("First"));
    // Two fragments of 20 ms may be on their way.
    expectSoundIn(m_desk.recordings().front(), swallowedAtTheStart + 2 * swallowedAtTheStart);
    startTheSoundServerAnew();
    EXPECT_TRUE(hasCues());
    expectSecondOneWorks();
}

INSTANTIATE_TEST_SUITE_P(
    Moments, SoundServerKilledLate,
    testing::Values(Moment{"beforeTheLastWordHasCome", killBeforeTheLastWordHasCome},
                    Moment{"whileTheTextIsPasted", killWhileTheTextIsPasted},
                    Moment{"atTheCueOfTheEnd", killAtTheCueOfTheEnd, withCues}),
    [](const auto& row) { return row.param.description; });

}  // namespace
}  // namespace sayloft::test
