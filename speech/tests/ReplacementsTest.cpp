// SPDX-License-Identifier: MIT
#include "speech/Replacements.h"

#include <QList>

#include <gtest/gtest.h>

#include <random>

namespace sayloft {
namespace {

using Dictionary = std::vector<std::vector<QString>>;

struct ReplacementRow {
    const char* name;
    const char* text;
    std::vector<std::vector<const char*>> dictionary;
    const char* result;
};

class Replacement : public testing::TestWithParam<ReplacementRow> {};

TEST_P(Replacement, givesTheCorrectedText) {
    Dictionary dictionary;
    for (const auto& entry : GetParam().dictionary) {
        auto& converted = dictionary.emplace_back();
        for (const char* item : entry)
            converted.push_back(QString::fromUtf8(item));
    }
    EXPECT_EQ(applyReplacements(QString::fromUtf8(GetParam().text), dictionary).toStdString(),
              GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    Dictionaries, Replacement,
    testing::Values(
        ReplacementRow{"emptyDictionaryKeepsEverything", "  as it is \n", {}, "  as it is \n"},
        ReplacementRow{"oneItemIsIgnored", "hello", {{"hello"}}, "hello"},
        ReplacementRow{"threeItemsAreIgnored", "hello", {{"hello", "a", "b"}}, "hello"},
        ReplacementRow{"noItemIsIgnored", "hello", {{}}, "hello"},
        ReplacementRow{"nothingHeardIsIgnored", "hello", {{"", "x"}}, "hello"},
        ReplacementRow{"substringsMatch", "Concatenate", {{"cat", "dog"}}, "Condogenate"},
        ReplacementRow{"caseDoesNotMatter", "Hello HELLO hello", {{"hello", "Hi"}}, "Hi Hi Hi"},
        ReplacementRow{
            "otherAlphabetsHaveCaseToo", "ПРИВЕТ Größe", {{"привет", "a"}, {"GRÖ", "b"}}, "a bße"},
        ReplacementRow{"entriesChain", "a", {{"a", "b"}, {"b", "c"}}, "c"},
        ReplacementRow{"orderMatters", "a", {{"b", "c"}, {"a", "b"}}, "b"},
        ReplacementRow{"emptyReplacementDeletes", "one um two", {{"um ", ""}}, "one two"},
        ReplacementRow{"matchesDoNotOverlap", "aaaaa", {{"aa", "b"}}, "bba"},
        ReplacementRow{"ownReplacementIsNotSearched", "a", {{"a", "aa"}}, "aa"},
        ReplacementRow{"patternsAreText", "a.b (c)", {{".", "!"}, {"(c)", "[c]"}}, "a!b [c]"},
        ReplacementRow{"longerThanTheText", "a", {{"abc", "x"}}, "a"},
        ReplacementRow{"emptyText", "", {{"a", "b"}}, ""}),
    [](const auto& row) { return row.param.name; });

QString randomText(std::mt19937& random, int longest) {
    const QString alphabet = QStringLiteral("aAbBßẞſsSKkKıIiİΣσς😀𐐀𐐨 ");
    const QList<uint> letters = alphabet.toUcs4();
    QString text;
    const auto size = static_cast<int>(random() % static_cast<unsigned>(longest + 1));
    for (int i = 0; i < size; ++i) {
        const auto letter =
            static_cast<qsizetype>(random() % static_cast<unsigned>(letters.size()));
        text += QString::fromUcs4(reinterpret_cast<const char32_t*>(&letters[letter]), 1);
    }
    return text;
}

TEST(Replacements, areThoseThatQtMakesOneByOne) {
    std::mt19937 random(1);  // NOLINT(bugprone-*, cert-*): the same run every time
    for (int round = 0; round < 5000; ++round) {
        const QString text = randomText(random, 30);
        Dictionary dictionary;
        QString expected = text;
        for (int entry = 0; entry < 4; ++entry) {
            const QString heard = randomText(random, 2) + QLatin1Char(entry % 2 == 0 ? 'a' : 'S');
            dictionary.push_back({heard, randomText(random, 3)});
            expected.replace(heard, dictionary.back().back(), Qt::CaseInsensitive);
        }
        ASSERT_EQ(applyReplacements(text, dictionary), expected) << text.toStdString();
    }
}

}  // namespace
}  // namespace sayloft
