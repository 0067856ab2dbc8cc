// SPDX-License-Identifier: MIT
// What has become of the words when a dictation fails, with the real program.
#include "tests/endtoend/Dictation.h"
#include "tests/support/FileModes.h"
#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QFile>

#include <gmock/gmock.h>

#include <csignal>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

const RawAnswer broken = RawAnswer::status(500);
const std::vector<RawAnswer> oneFailure(4, broken);

std::vector<RawAnswer> operator+(std::vector<RawAnswer> first,
                                 const std::vector<RawAnswer>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

class AFailedDictation : public Dictation {
protected:
    [[nodiscard]] QString kept() const {
        return m_desk.dataFile(QStringLiteral("last-failed.wav"));
    }

    [[nodiscard]] bool tooltipNamesIt() const {
        return m_client.property(QStringLiteral("ToolTip"))
            .contains(QStringLiteral("recording kept in ~/.sayloft/last-failed.wav"));
    }

    void sayInVain(qsizetype times = 1) {
        m_desk.say();
        ASSERT_TRUE(waitUntil(
            [&] {
                return m_desk.sayloft().log().count(QStringLiteral("TRANSCRIBE FAILED")) == times;
            },
            20s));
    }

    void speakWithoutLettingGo() {
        m_desk.startSayloft({RawAnswer::hang()});
        m_desk.hold();
        m_desk.room().play(m_desk.soundFile());
    }

    void expectSoundKept() {
        expectSoundIn(readSound(kept()));
        EXPECT_EQ(run(QStringLiteral("soxi"), {QStringLiteral("-r"), kept()}).trimmed(), "16000");
        EXPECT_EQ(QFile::permissions(kept()) & ~(QFile::ReadUser | QFile::WriteUser),
                  QFile::ReadOwner | QFile::WriteOwner);
    }

    TrayClient m_client{m_desk.bus()};
};

TEST_F(AFailedDictation, leavesItsSoundUntilOneWorksAndSaysWhere) {
    m_desk.startSayloft(oneFailure + std::vector{RawAnswer::ok("words")});
    EXPECT_FALSE(tooltipNamesIt());
    sayInVain();
    EXPECT_TRUE(waitUntil([this] { return tooltipNamesIt(); }));
    expectSoundKept();
    m_desk.say();
    expectInEditor(QStringLiteral("words"));
    EXPECT_TRUE(waitUntil([this] { return !QFile::exists(kept()); }));
    EXPECT_TRUE(waitUntil([this] { return !tooltipNamesIt(); }));
}

TEST_F(AFailedDictation, takesThePlaceOfAnEarlierOne) {
    m_desk.startSayloft({broken});
    sayInVain();
    m_desk.hold();
    m_desk.letGo();
    ASSERT_TRUE(waitUntil(
        [this] { return m_desk.sayloft().log().count(QStringLiteral("TRANSCRIBE FAILED")) == 2; },
        20s));
    EXPECT_LT(readSound(kept()).size(), m_desk.sound().size());
    sayInVain(3);
    expectSoundKept();
}

TEST_F(AFailedDictation, isKeptWhereNothingWasRecognisedInTheNextOne) {
    m_desk.startSayloft(oneFailure + std::vector{RawAnswer::ok("")});
    sayInVain();
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectSoundKept();
}

TEST_F(AFailedDictation, isKeptWhenTheProgramEndsInTheMiddle) {
    m_desk.startSayloft({RawAnswer::hang()});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    m_desk.sayloft().program().signal(SIGTERM);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    expectSoundKept();
}

TEST_F(AFailedDictation, isKeptWhenTheXServerGoes) {
    m_desk.startSayloft({RawAnswer::hang()});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    m_desk.display().program().signal(SIGKILL);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    expectSoundKept();
}

TEST_F(AFailedDictation, isKeptWhenTheProgramEndsWhileTheChordIsHeld) {
    speakWithoutLettingGo();
    m_desk.sayloft().program().signal(SIGTERM);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    expectSoundKept();
}

TEST_F(AFailedDictation, isKeptWhenTheXServerGoesWhileTheChordIsHeld) {
    speakWithoutLettingGo();
    m_desk.display().program().signal(SIGKILL);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    expectSoundKept();
}

TEST_F(AFailedDictation, isKeptWhenNobodyListens) {
    m_desk.startSayloftWithoutServer();
    sayInVain();
    expectSoundKept();
    EXPECT_TRUE(waitUntil([this] { return tooltipNamesIt(); }));
}

TEST_F(Dictation, thatHasNowhereToGoIsInTheHistory) {
    RawAnswer slow = RawAnswer::ok("words");
    slow.trickleMs = 20;
    m_desk.startSayloft({slow});
    m_desk.say();
    m_desk.editor().program().signal(SIGKILL);
    ASSERT_TRUE(m_desk.editor().program().waitForEnd(5s));
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["words"])"; }));
    const TrayClient client(m_desk.bus());
    EXPECT_TRUE(waitUntil([&] { return client.labels().contains(QStringLiteral("words")); }));
}

}  // namespace
}  // namespace sayloft::test
