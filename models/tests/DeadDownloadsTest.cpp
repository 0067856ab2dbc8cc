// SPDX-License-Identifier: MIT
#include "models/DeadDownloads.h"

#include "models/PartialFile.h"
#include "tests/support/TempHome.h"

#include <QDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class DeadDownloads : public testing::Test {
protected:
    void leavePart(const QString& file, const QByteArray& content = "part") {
        test::writeFile(partOf(file), content);
    }

    void leaveNote(const QString& file) {
        QDir().mkpath(m_models);
        ResumeNote{.url = QUrl(QStringLiteral("https://models.example/a")),
                   .etag = "\"tag\"",
                   .size = {},
                   .sha256 = {}}
            .save(noteOf(file));
    }

    [[nodiscard]] QString partOf(const QString& file) const {
        return m_models + file + PartialFile::suffix;
    }
    [[nodiscard]] QString noteOf(const QString& file) const {
        return m_models + file + PartialFile::noteSuffix;
    }
    [[nodiscard]] QStringList dead() const {
        return deadDownloads(m_models, {.chosen = m_wanted, .offered = {m_wanted, m_offered}});
    }

    test::TempHome m_home;
    const QString m_models = m_home.path() + QStringLiteral("/models/");
    const QString m_wanted = QStringLiteral("wanted.gguf");
    const QString m_offered = QStringLiteral("offered.gguf");
};

TEST_F(DeadDownloads, areNotThoseThatCanGoOn) {
    leavePart(m_wanted);
    leaveNote(m_wanted);
    test::makeOlder(partOf(m_wanted), 29);
    EXPECT_THAT(dead(), IsEmpty());
}

TEST_F(DeadDownloads, areThoseWithoutANote) {
    leavePart(m_wanted);
    EXPECT_THAT(dead(), ElementsAre(partOf(m_wanted)));
}

TEST_F(DeadDownloads, areNotesWithoutAnythingToGoOnFrom) {
    leaveNote(m_wanted);
    EXPECT_THAT(dead(), ElementsAre(noteOf(m_wanted)));
    leavePart(m_wanted, "");
    EXPECT_THAT(dead(), UnorderedElementsAre(noteOf(m_wanted), partOf(m_wanted)));
}

TEST_F(DeadDownloads, areThoseOfFilesThatNobodyWants) {
    leavePart(QStringLiteral("other.gguf"));
    leaveNote(QStringLiteral("other.gguf"));
    EXPECT_THAT(dead(), UnorderedElementsAre(partOf(QStringLiteral("other.gguf")),
                                             noteOf(QStringLiteral("other.gguf"))));
}

TEST_F(DeadDownloads, areThoseThatAreAMonthOld) {
    leavePart(m_wanted);
    leaveNote(m_wanted);
    test::makeOlder(partOf(m_wanted), 31);
    EXPECT_THAT(dead(), UnorderedElementsAre(partOf(m_wanted), noteOf(m_wanted)));
}

TEST_F(DeadDownloads, areThoseOfModelsThatWereNotChosenAfterAWeek) {
    leavePart(m_offered);
    leaveNote(m_offered);
    test::makeOlder(partOf(m_offered), 6);
    EXPECT_THAT(dead(), IsEmpty());
    test::makeOlder(partOf(m_offered), 8);
    EXPECT_THAT(dead(), UnorderedElementsAre(partOf(m_offered), noteOf(m_offered)));
}

TEST_F(DeadDownloads, areNotesThatWereNotWrittenToTheirEnd) {
    leavePart(m_wanted);
    leaveNote(m_wanted);
    const QString unfinished = noteOf(m_wanted) + QStringLiteral(".AbCdEf");
    test::writeFile(unfinished, "{");
    EXPECT_THAT(dead(), ElementsAre(unfinished));
}

TEST_F(DeadDownloads, areNeverFilesOfOthers) {
    for (const char* name : {"wanted.gguf", "other.gguf", "other.gguf.part", "notes.json"})
        test::writeFile(m_models + QString::fromUtf8(name), "content");
    EXPECT_THAT(dead(), IsEmpty());
}

TEST_F(DeadDownloads, areNoneWhereThereIsNoFolder) {
    EXPECT_THAT(dead(), IsEmpty());
}

}  // namespace
}  // namespace sayloft
