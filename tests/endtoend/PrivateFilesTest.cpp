// SPDX-License-Identifier: MIT
// Whose business the files of the real program are.
#include "tests/endtoend/Dictation.h"
#include "tests/support/FileModes.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFile>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>

#include <sys/stat.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

bool isOpenToOthers(const std::string& entry) {
    const bool isPrivate = entry.starts_with("0600 ") || entry.starts_with("0700 ");
    // What is in the folder of the models is no secret; the folder itself is closed.
    return !isPrivate && entry.find(" models/") == std::string::npos;
}

/// The whole desktop, and the program on it, has no umask.
class FilesOfTheUser : public Dictation {
protected:
    FilesOfTheUser() { ::umask(0); }

    [[nodiscard]] std::vector<std::string> openToOthers() const {
        std::vector<std::string> entries = modesIn(m_desk.home() + QStringLiteral("/.sayloft"));
        EXPECT_GT(entries.size(), 3U);
        std::erase_if(entries, [](const std::string& entry) { return !isOpenToOthers(entry); });
        return entries;
    }
};

TEST_F(FilesOfTheUser, areNobodyElsesThroughAWholeDictation) {
    const std::vector<RawAnswer> failure(4, RawAnswer::status(500));
    std::vector<RawAnswer> answers = failure;
    answers.push_back(RawAnswer::ok("words"));
    answers.insert(answers.end(), failure.begin(), failure.end());
    m_desk.startSayloft(answers);
    EXPECT_THAT(openToOthers(), testing::IsEmpty());
    m_desk.hold();
    EXPECT_THAT(modesIn(m_desk.home()), testing::Contains("0600 .sayloft/tmp/sayloft_rec.wav"));
    EXPECT_THAT(openToOthers(), testing::IsEmpty());
    m_desk.letGo();
    EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
    EXPECT_THAT(modesIn(m_desk.home()), testing::Contains("0600 .sayloft/last-failed.wav"));
    m_desk.say();
    ASSERT_TRUE(m_desk.waitForTranscripts(1));
    EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["words"])"; }));
    EXPECT_THAT(openToOthers(), testing::IsEmpty());
    m_desk.sayloft().program().signal(SIGTERM);
    ASSERT_TRUE(m_desk.sayloft().program().waitForEnd(10s));
    EXPECT_THAT(openToOthers(), testing::IsEmpty());
    EXPECT_THAT(
        modesIn(m_desk.home()),
        testing::IsSupersetOf({"0600 .sayloft/history.json", "0600 .sayloft/history.json.saved",
                               "0600 .sayloft/config.json.saved", "0600 .sayloft/sayloft.log"}));
}

TEST_F(FilesOfTheUser, fromAnOlderVersionAreClosedAtTheStart) {
    for (const char* name : {"sayloft.log", "history.json", "tmp/sayloft_rec.wav", "notes/mine"})
        writeFile(m_desk.dataFile(QString::fromLatin1(name)), "[]");
    ASSERT_THAT(openToOthers(), testing::SizeIs(testing::Ge(7U)));
    m_desk.startSayloft({RawAnswer::ok("words")});
    EXPECT_THAT(openToOthers(), testing::IsEmpty());
}

}  // namespace
}  // namespace sayloft::test
