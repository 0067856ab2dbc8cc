// SPDX-License-Identifier: MIT
#include "models/ResumeNote.h"

#include "storage/WholeFile.h"

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

}  // namespace
}  // namespace sayloft
