// SPDX-License-Identifier: MIT
// Whose business the files of the real program are.
#include "tests/endtoend/Dictation.h"
#include "tests/endtoend/SettingsSwitch.h"
#include "tests/support/FileModes.h"
#include "tests/support/ModelHost.h"
#include "tests/support/OwnNamespaces.h"
#include "tests/support/Strace.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <set>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

bool isOpenToOthers(const std::string& entry) {
    const bool isPrivate = entry.starts_with("0600 ") || entry.starts_with("0700 ");
    // What somebody has put into the folder of the models may be other programs' too, even as the
    // same file; the folder itself is closed.
    return !isPrivate && entry.find(" models/starter-en-us.model") == std::string::npos;
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

/// Every file and folder at the moment when it is made, as the kernel was asked for it.
class NewFilesOfTheUser : public FilesOfTheUser {
protected:
    NewFilesOfTheUser() {
        m_host.offer();
        m_desk.connectTo(m_host);
        m_desk.runBy(strace(m_trace, {QStringLiteral("-e"),
                                      QStringLiteral("trace=openat,creat,mkdir,mkdirat,umask")}));
    }

    [[nodiscard]] static std::string entry(int rights, const QString& path) {
        return (QStringLiteral("0%1 ").arg(rights, 0, 8) + path).toStdString();
    }

    /// "0600 history.json", for example, of all in the program's folder.
    [[nodiscard]] std::set<std::string> made() const {
        static const QRegularExpression call(QStringLiteral(
            R"re((umask)?\((?:AT_FDCWD, )?(?:"([^"]*)", )?(?:[A-Z_|]*O_CREAT[A-Z_|]*, )?(0[0-7]*)[) ])re"));
        const QString folder = m_desk.dataFile({});
        std::set<std::string> entries;
        int mask = 0;
        for (auto calls = call.globalMatch(QString::fromUtf8(readFile(m_trace)));
             calls.hasNext();) {
            const QRegularExpressionMatch match = calls.next();
            const QString path = match.captured(2);
            const int rights = match.captured(3).toInt(nullptr, 8);
            if (!match.captured(1).isEmpty())
                mask = rights;
            else if (path.startsWith(folder))
                entries.insert(entry(rights & ~mask, path.mid(folder.size())));
        }
        return entries;
    }

    void speakInVainAndThenWell() {
        m_desk.say();
        EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("TRANSCRIBE FAILED")));
        m_desk.say();
        EXPECT_TRUE(m_desk.waitForTranscripts(1));
        EXPECT_TRUE(waitUntil([this] { return m_desk.history() == R"(["words"])"; }));
    }

    void download() {
        m_settings.downloadEnglish();
        EXPECT_TRUE(m_desk.sayloft().waitForLog(QStringLiteral("model download english: ok"), 60s));
    }

    const QTemporaryDir m_directory;
    const QString m_trace = m_directory.filePath(QStringLiteral("trace"));
    const ModelHost m_host{QStringLiteral("english"), "serve\n" + QByteArray(100'000, 'm'), {}};
    const SettingsSwitch m_settings{m_desk};
    // So that the sound of a dictation that failed is copied and not moved.
    const SmallDisk m_otherDisk{m_desk.dataFile(QStringLiteral("tmp")), "size=4m"};
};

TEST_F(NewFilesOfTheUser, areMadeForNobodyElse) {
    std::vector<RawAnswer> answers(4, RawAnswer::status(500));
    answers.push_back(RawAnswer::ok("words"));
    m_desk.startSayloft(answers);
    speakInVainAndThenWell();
    m_settings.open();
    m_settings.press(SettingsSwitch::boost);
    EXPECT_TRUE(waitUntil([this] { return !m_settings.isOn(SettingsSwitch::boost); }));
    download();
    const std::string model = "models/parakeet-tdt-0.6b-v2-f16.gguf";
    EXPECT_THAT(made(),
                testing::IsSupersetOf({"0600 sayloft.log", "0600 tmp/room",
                                       "0600 tmp/sayloft_rec.wav", "0600 last-failed.wav.part",
                                       "0600 config.json", "0600 config.json.new.part",
                                       "0600 history.json", "0600 history.json.new.part",
                                       ("0600 " + model + ".sayloft-part").c_str()}));
    for (const std::string& entry : made()) {
        // What the test's own helper writes beside its model.
        if (entry.ends_with(".model.log") || entry.ends_with(".gguf.log"))
            continue;
        EXPECT_TRUE(entry.starts_with("0600 ") || entry.starts_with("0700 ")) << entry;
    }
}

}  // namespace
}  // namespace sayloft::test
