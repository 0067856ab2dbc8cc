// SPDX-License-Identifier: MIT
#include "speech/Replacements.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace sayloft
