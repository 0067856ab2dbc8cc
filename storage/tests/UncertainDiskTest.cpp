// SPDX-License-Identifier: MIT
#include "storage/tests/UncertainDisk.h"

#include "tests/support/TempHome.h"

#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <stdexcept>
#include <utility>

namespace sayloft::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::UnorderedElementsAre;

/// One with a file "a.json", in which "old" stands.
class AnUncertainDisk : public testing::Test {
protected:
    /// Texts by the last part of the name; of a text a zero is written as "0".
    using Folder = std::map<std::string, std::string>;

    static TracedCall::Argument number(int number) {
        return {.word = QString::number(number), .text = {}};
    }
    static TracedCall::Argument text(const QString& text) {
        return {.word = {}, .text = text.toUtf8()};
    }

    void call(const char* name, std::vector<TracedCall::Argument> arguments, qint64 result = 0) {
        callSince(m_calls, name, std::move(arguments), result);
    }
    void callSince(std::size_t before, const char* name,
                   std::vector<TracedCall::Argument> arguments, qint64 result = 0) {
        ++m_calls;
        m_disk.apply({.name = QString::fromLatin1(name),
                      .arguments = std::move(arguments),
                      .result = result,
                      .before = before});
    }
    void open(int descriptor, const QString& path, const char* flags) {
        call("openat", {text(path), {.word = QString::fromLatin1(flags), .text = {}}}, descriptor);
    }
    void write(int descriptor, const char* words) {
        call("write", {number(descriptor), text(QString::fromLatin1(words))},
             static_cast<qint64>(std::strlen(words)));
    }
    void writeNew(const QString& path, const char* words) {
        open(3, path, "O_WRONLY|O_CREAT|O_TRUNC");
        write(3, words);
    }
    void synchroniseFolder() {
        open(9, QFileInfo(m_file).path(), "O_RDONLY");
        call("fsync", {number(9)});
        call("close", {number(9)});
    }

    static Folder inShort(const std::map<QString, QByteArray>& texts) {
        Folder folder;
        for (const auto& [path, text] : texts)
            folder[QFileInfo(path).suffix().toStdString()] =
                QByteArray(text).replace('\0', '0').toStdString();
        return folder;
    }

    std::set<Folder> afterPowerCut() {
        std::set<Folder> folders;
        for (const UncertainDisk::Folder& folder : m_disk.afterPowerCut()) {
            std::map<QString, QByteArray> texts;
            for (const auto& [path, text] : folder)
                texts[path] = *text;
            folders.insert(inShort(texts));
        }
        return folders;
    }

    TempHome m_home;
    const QString m_file = m_home.path() + QStringLiteral("/a.json");
    const QString m_new = m_file + QStringLiteral(".new");
    const QString m_saved = m_file + QStringLiteral(".saved");
    UncertainDisk m_disk = [&] {
        writeFile(m_file, "old");
        return UncertainDisk(m_file);
    }();

private:
    std::size_t m_calls = 0;
};

TEST_F(AnUncertainDisk, mayHaveAnythingOfATextThatWasNotSynchronised) {
    EXPECT_THAT(afterPowerCut(), ElementsAre(Folder{{"json", "old"}}));
    writeNew(m_file, "text");
    EXPECT_THAT(afterPowerCut(),
                UnorderedElementsAre(Folder{{"json", "old"}}, Folder{{"json", ""}},
                                     Folder{{"json", "te"}}, Folder{{"json", "te00"}},
                                     Folder{{"json", "0000"}}, Folder{{"json", "text"}}));
}

TEST_F(AnUncertainDisk, hasTheTextThatWasSynchronised) {
    writeNew(m_file, "text");
    call("fsync", {number(3)});
    EXPECT_THAT(afterPowerCut(), ElementsAre(Folder{{"json", "text"}}));
}

TEST_F(AnUncertainDisk, mayLackWhatWasWrittenDuringASynchronisation) {
    writeNew(m_file, "text");
    write(3, "s");
    callSince(2, "fdatasync", {number(3)});
    EXPECT_THAT(afterPowerCut(), Contains(Folder{{"json", "text"}}));
    EXPECT_THAT(afterPowerCut(), Contains(Folder{{"json", "texts"}}));
    EXPECT_THAT(afterPowerCut(), Not(Contains(Folder{{"json", "old"}})));
}

TEST_F(AnUncertainDisk, mayLackANameUntilTheFolderIsSynchronised) {
    writeNew(m_new, "text");
    call("fsync", {number(3)});
    const Folder both{{"json", "old"}, {"new", "text"}};
    EXPECT_THAT(afterPowerCut(), UnorderedElementsAre(both, Folder{{"json", "old"}}));
    synchroniseFolder();
    EXPECT_THAT(afterPowerCut(), ElementsAre(both));
}

TEST_F(AnUncertainDisk, changesNamesInTheirOrder) {
    call("rename", {text(m_file), text(m_new)});
    call("link", {text(m_new), text(m_saved)});
    call("unlink", {text(m_new)});
    EXPECT_THAT(
        afterPowerCut(),
        UnorderedElementsAre(Folder{{"json", "old"}}, Folder{{"new", "old"}},
                             Folder{{"new", "old"}, {"saved", "old"}}, Folder{{"saved", "old"}}));
}

// What a save must not do.
TEST_F(AnUncertainDisk, mayHaveNothingOfAFileThatReplacedAnotherUnsynchronised) {
    writeNew(m_new, "text");
    call("rename", {text(m_new), text(m_file)});
    synchroniseFolder();
    EXPECT_THAT(afterPowerCut(), Contains(Folder{{"json", ""}}));
    EXPECT_THAT(afterPowerCut(), Not(Contains(Folder{{"json", "old"}})));
}

TEST_F(AnUncertainDisk, knowsWhereAWriteGoes) {
    open(3, m_file, "O_WRONLY|O_APPEND");
    write(3, "er");
    EXPECT_EQ(inShort(m_disk.now()), (Folder{{"json", "older"}}));
    open(3, m_file, "O_WRONLY");
    write(3, "b");
    write(3, "o");
    EXPECT_EQ(inShort(m_disk.now()), (Folder{{"json", "boder"}}));
    call("pwrite64", {number(3), text(QStringLiteral("s")), number(1), number(6)}, 1);
    EXPECT_EQ(inShort(m_disk.now()), (Folder{{"json", "boder0s"}}));
    call("ftruncate", {number(3), number(4)});
    EXPECT_EQ(inShort(m_disk.now()), (Folder{{"json", "bode"}}));
}

TEST_F(AnUncertainDisk, knowsThatANumberIsFreeBeforeItsClosingReturns) {
    open(3, m_new, "O_WRONLY|O_CREAT");
    open(3, m_file, "O_WRONLY|O_APPEND");
    callSince(1, "close", {number(3)});
    write(3, "er");
    EXPECT_EQ(inShort(m_disk.now()), (Folder{{"json", "older"}, {"new", ""}}));
}

TEST_F(AnUncertainDisk, knowsNothingOfOtherFilesNorOfCallsThatFailed) {
    writeNew(m_home.path() + QStringLiteral("/b.json"), "text");
    call("close", {number(3)});
    write(3, "text");
    call("unlink", {text(m_file)}, -1);
    EXPECT_THAT(afterPowerCut(), ElementsAre(Folder{{"json", "old"}}));
}

TEST_F(AnUncertainDisk, takesNoCallThatItDoesNotKnow) {
    EXPECT_THROW(call("fallocate", {number(3)}), std::runtime_error);
    EXPECT_THROW(call("unlink", {text(m_new)}), std::runtime_error);
}

}  // namespace
}  // namespace sayloft::test
