// SPDX-License-Identifier: MIT
// The clock on the wall jumps while somebody dictates.
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/ModelHost.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <ostream>
#include <string>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

struct Jump {
    std::string description;
    QByteArray offset;
    QString refusal;  ///< of a certificate that is valid today
};

void PrintTo(const Jump& jump, std::ostream* out) {
    *out << jump.description;
}

/// The clock on the wall as the program sees it; others do not.
class ClockJump : public Dictation, public testing::WithParamInterface<Jump> {
protected:
    ClockJump() {
        setClock("+0");
        m_desk.setEnvironment(QStringLiteral("LD_PRELOAD"), QStringLiteral("libfaketimeMT.so.1"));
        m_desk.setEnvironment(QStringLiteral("LD_LIBRARY_PATH"),
                              QStringLiteral(SAYLOFT_FAKETIME_DIR));
        m_desk.setEnvironment(QStringLiteral("FAKETIME_TIMESTAMP_FILE"), m_clockFile);
        m_desk.setEnvironment(QStringLiteral("FAKETIME_NO_CACHE"), QStringLiteral("1"));
        m_desk.setEnvironment(QStringLiteral("DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
        m_desk.connectTo(m_host);
        m_host.offer();
    }

    void setClock(const QByteArray& offset) const { writeFile(m_clockFile, offset + '\n'); }

    void jump() const { setClock(GetParam().offset); }

    /// By the clock that the program looks at, the certificate of the models' host does not count.
    void expectJumpSeen() {
        m_settings.open();
        m_settings.downloadEnglish();
        EXPECT_TRUE(m_desk.sayloft().waitForLog(
            QStringLiteral("download error: SSL certificate problem: ") + GetParam().refusal))
            << m_desk.sayloft().log().toStdString();
    }

    const QTemporaryDir m_directory;
    const QString m_clockFile = m_directory.filePath(QStringLiteral("clock"));
    const ModelHost m_host{QStringLiteral("english"), QByteArray(1000, 'm'), {}};
    const SettingsSwitch m_settings{m_desk};
};

TEST_P(ClockJump, inTheMiddleOfADictationChangesNothing) {
    m_desk.startSayloft({RawAnswer::ok("First"), RawAnswer::ok("Second")});
    m_desk.hold();
    m_desk.room().play(m_desk.soundFile());
    jump();
    m_desk.letGo();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    expectSoundIn(m_desk.recordings().front());
    expectSecondOneWorks();
    expectJumpSeen();
}

TEST_P(ClockJump, duringATranscriptionChangesNothing) {
    m_desk.startSayloft({RawAnswer::slowly("First", 2s), RawAnswer::ok("Second")});
    m_desk.say();
    ASSERT_TRUE(waitUntil([this] { return m_desk.recordings().size() == 1; }));
    jump();
    EXPECT_TRUE(m_desk.transcripts().isEmpty());
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_EQ(m_desk.recordings().size(), 1U);
    expectSecondOneWorks();
    expectJumpSeen();
}

INSTANTIATE_TEST_SUITE_P(
    Of, ClockJump,
    testing::Values(Jump{"aYearAhead", "+400d", QStringLiteral("certificate has expired")},
                    Jump{"aYearBack", "-400d", QStringLiteral("certificate is not yet valid")}),
    [](const auto& row) { return row.param.description; });

}  // namespace
}  // namespace sayloft::test
