// SPDX-License-Identifier: MIT
#include "storage/History.h"

#include "models/Paths.h"
#include "storage/Json.h"
#include "tests/support/TempHome.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class HistoryFile : public testing::Test {
protected:
    static std::size_t storedItems() { return parseJson(test::readFile(History::url()))->size(); }

    static QByteArray fileWith(int items) {
        Json array = Json::array();
        for (int i = 0; i < items; ++i)
            array.push_back("entry " + std::to_string(i));
        return writeJson(array);
    }

    test::TempHome m_home;
};

TEST_F(HistoryFile, thatIsMissingIsAnEmptyHistory) {
    EXPECT_TRUE(History().items().empty());
}

TEST_F(HistoryFile, keepsTheNewestFirstAcrossRestarts) {
    History first;
    first.add(QStringLiteral("one"));
    first.add(QStringLiteral("two 😀\nlines"));
    const History second;
    ASSERT_EQ(second.items().size(), 2U);
    EXPECT_EQ(second.items()[0], QStringLiteral("two 😀\nlines"));
    EXPECT_EQ(second.items()[1], QStringLiteral("one"));
}

TEST_F(HistoryFile, dropsTheOldestOnTheFiftyFirstEntry) {
    History history;
    for (int i = 0; i < 51; ++i)
        history.add(QString::number(i));
    EXPECT_EQ(history.items().size(), 50U);
    EXPECT_EQ(history.items().back(), QStringLiteral("1"));
    EXPECT_EQ(storedItems(), 50U);
}

TEST_F(HistoryFile, keepsTheSameTextTwice) {
    History history;
    history.add(QStringLiteral("again"));
    history.add(QStringLiteral("again"));
    EXPECT_EQ(history.items(), std::vector(2, QStringLiteral("again")));
}

TEST_F(HistoryFile, loadsALongerListAsItStandsAndTrimsItAtTheNextEntry) {
    test::writeFile(History::url(), fileWith(80));
    History history;
    EXPECT_EQ(history.items().size(), 80U);
    history.add(QStringLiteral("new"));
    EXPECT_EQ(history.items().size(), 50U);
    EXPECT_EQ(history.items()[49], QStringLiteral("entry 48"));
    EXPECT_EQ(storedItems(), 50U);
}

TEST_F(HistoryFile, isAnEmptyArrayOnceCleared) {
    History history;
    history.add(QStringLiteral("gone"));
    history.clear();
    EXPECT_TRUE(history.items().empty());
    EXPECT_EQ(test::readFile(History::url()), "[]");
}

struct BadFile {
    const char* name;
    const char* content;
};

class DamagedHistoryFile : public HistoryFile, public testing::WithParamInterface<BadFile> {};

TEST_P(DamagedHistoryFile, isAnEmptyHistoryUntilTheNextEntry) {
    test::writeFile(History::url(), GetParam().content);
    History history;
    EXPECT_TRUE(history.items().empty());
    EXPECT_EQ(test::readFile(History::url()), GetParam().content);
    history.add(QStringLiteral("fresh"));
    EXPECT_EQ(test::readFile(History::url()), R"(["fresh"])");
}

INSTANTIATE_TEST_SUITE_P(Content, DamagedHistoryFile,
                         testing::Values(BadFile{"number", "7"}, BadFile{"object", "{\"a\":\"b\"}"},
                                         BadFile{"mixed", "[\"a\",7]"}, BadFile{"cutOff", "[\"a\""},
                                         BadFile{"tooLargeNumber", "[1e400]"}, BadFile{"empty", ""},
                                         BadFile{"binary", "\xff\xfe"}),
                         [](const auto& file) { return file.param.name; });

TEST_F(HistoryFile, thatCannotBeWrittenIsNoError) {
    test::writeFile(DATA_DIR, "a file where the directory should be");
    History history;
    history.add(QStringLiteral("only in memory"));
    EXPECT_EQ(history.items().size(), 1U);
}

}  // namespace
}  // namespace sayloft
