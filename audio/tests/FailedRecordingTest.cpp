// SPDX-License-Identifier: MIT
#include "audio/FailedRecording.h"

#include "models/Paths.h"
#include "tests/support/TempHome.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cstdint>

namespace sayloft {
namespace {

/// Dictations are numbered anew in every test, higher than in those before.
class TheFailedRecording : public testing::Test {
protected:
    TheFailedRecording() { s_first += 10; }

    static void fail(int dictation, const QByteArray& sound) {
        const QString recording = TEMP_DIR + QStringLiteral("/recording.wav");
        test::writeFile(recording, QByteArray(44, 'h') + sound);
        FailedRecording::keep(recording, s_first + static_cast<std::uint64_t>(dictation));
    }

    static void work(int dictation) {
        FailedRecording::forgetBefore(s_first + static_cast<std::uint64_t>(dictation));
    }

    static QByteArray sound() { return test::readFile(FailedRecording::file()).mid(44); }

    test::TempHome m_home;

private:
    static inline std::uint64_t s_first = 0;
};

TEST_F(TheFailedRecording, isThatOfTheLastDictationThatFailed) {
    fail(1, "one");
    fail(2, "two");
    EXPECT_EQ(sound(), "two");
}

TEST_F(TheFailedRecording, isNotReplacedByAnEarlierDictationThatFailsLater) {
    fail(2, "two");
    fail(1, "one");
    EXPECT_EQ(sound(), "two");
}

TEST_F(TheFailedRecording, goesWhenALaterDictationWorks) {
    fail(1, "one");
    work(2);
    EXPECT_FALSE(FailedRecording::isKept());
}

TEST_F(TheFailedRecording, staysWhenAnEarlierDictationWorksLater) {
    fail(2, "two");
    work(1);
    EXPECT_EQ(sound(), "two");
}

TEST_F(TheFailedRecording, ofNoSoundIsNotKept) {
    fail(1, {});
    EXPECT_FALSE(FailedRecording::isKept());
}

TEST_F(TheFailedRecording, thatCannotBeKeptIsLogged) {
    QDir().mkpath(FailedRecording::file());
    fail(1, "one");
    EXPECT_TRUE(m_home.log().startsWith(QStringLiteral("the recording could not be kept: ")));
}

}  // namespace
}  // namespace sayloft
