// SPDX-License-Identifier: MIT
#include "models/FilesAside.h"

#include "tests/support/TempHome.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sayloft {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FilesAside : public testing::Test {
protected:
    [[nodiscard]] QString write(const QString& name) const {
        QString path = m_home.path() + QLatin1Char('/') + name;
        test::writeFile(path, "content");
        return path;
    }

    test::TempHome m_home;
    const QString m_name = QStringLiteral("a.gguf");
};

TEST_F(FilesAside, areGoneFromTheirPlaceAndFoundAgain) {
    const QString file = write(m_name);
    const auto aside = putAside(file);
    ASSERT_TRUE(aside);
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_EQ(test::readFile(*aside), "content");
    EXPECT_THAT(filesAside({QStringLiteral("/nonexistent"), m_home.path()}), ElementsAre(*aside));
}

TEST_F(FilesAside, takeThePlaceOfOthersThatAreLeft) {
    const auto before = putAside(write(m_name));
    EXPECT_EQ(putAside(write(m_name)), before);
}

TEST_F(FilesAside, areNoneThatWereNotThere) {
    EXPECT_FALSE(putAside(m_home.path() + QStringLiteral("/none")));
    EXPECT_THAT(filesAside({m_home.path()}), IsEmpty());
}

TEST_F(FilesAside, areNoneOfOtherNames) {
    static_cast<void>(write(m_name));
    static_cast<void>(write(QStringLiteral("a.deleted")));
    EXPECT_THAT(filesAside({m_home.path()}), IsEmpty());
}

}  // namespace
}  // namespace sayloft
