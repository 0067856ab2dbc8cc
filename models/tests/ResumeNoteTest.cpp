// SPDX-License-Identifier: MIT
#include "models/ResumeNote.h"

#include "storage/WholeFile.h"
#include "tests/support/OwnNamespaces.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

TEST(ResumeNote, withASizeThatNoFileHasSaysNothingOfTheSize) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("note.json"));
    writeWholeFile(path, R"({"url":"https://models.example/a","etag":"\"tag\"",)"
                         R"("size":-9223372036854775808})");
    const auto note = ResumeNote::load(path);
    ASSERT_TRUE(note);
    EXPECT_EQ(note->size, std::nullopt);
}

TEST(ResumeNote, isTheOldOneWhereThereIsNoRoomForANewOne) {
    const QTemporaryDir folder;
    test::SmallDisk disk(folder.path(), "size=1m");
    const QString path = folder.filePath(QStringLiteral("note.json"));
    const auto note = [](const char* etag) {
        return ResumeNote{.url = QUrl(QStringLiteral("https://models.example/a")),
                          .etag = etag,
                          .size = std::nullopt,
                          .sha256 = {}};
    };
    note("\"old\"").save(path);
    disk.fill();
    note("\"new\"").save(path);
    const auto saved = ResumeNote::load(path);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->etag, "\"old\"");
}

}  // namespace
}  // namespace sayloft
