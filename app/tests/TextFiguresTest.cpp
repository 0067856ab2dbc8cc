// SPDX-License-Identifier: MIT
#include "app/TextFigures.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

struct TextRow {
    const char* name;
    const char16_t* text;
    int characters;
    int words;
};

class FiguresOfAText : public testing::TestWithParam<TextRow> {};

TEST_P(FiguresOfAText, countWhatAReaderCounts) {
    const QString text = QString::fromUtf16(GetParam().text);
    EXPECT_EQ(characterCount(text), GetParam().characters);
    EXPECT_EQ(wordCount(text), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, FiguresOfAText,
    testing::Values(TextRow{"empty", u"", 0, 0}, TextRow{"oneWord", u"hello", 5, 1},
                    TextRow{"onlySpaces", u"   ", 3, 0},
                    TextRow{"manySpacesBetween", u"  one   two ", 12, 2},
                    TextRow{"severalLines", u"one\ntwo\n\nthree", 14, 3},
                    TextRow{"everyLineBreak", u"a\rb\vc\fd\u0085e\u2028f\u2029g", 13, 7},
                    TextRow{"carriageReturnAndLineFeedAreOneCharacter", u"a\r\nb", 3, 2},
                    TextRow{"tabsJoin", u"one\ttwo", 7, 1},
                    TextRow{"noBreakSpacesJoin", u"one\u00a0two", 7, 1},
                    TextRow{"combiningMarks", u"e\u0301te\u0301", 3, 1},
                    TextRow{"emojiFamily", u"\U0001F468\u200D\U0001F469\u200D\U0001F467 ok", 4, 2},
                    TextRow{"flag", u"\U0001F1E9\U0001F1EA", 1, 1}),
    [](const auto& row) { return row.param.name; });

struct RateRow {
    const char* name;
    int words;
    double seconds;
    int wpm;
};

class WordsPerMinute : public testing::TestWithParam<RateRow> {};

TEST_P(WordsPerMinute, areRoundedHalfAwayFromZero) {
    EXPECT_EQ(wordsPerMinute(GetParam().words, GetParam().seconds), GetParam().wpm);
}

INSTANTIATE_TEST_SUITE_P(Rates, WordsPerMinute,
                         testing::Values(RateRow{"thirtyWordsInTwelveSeconds", 30, 12, 150},
                                         RateRow{"halfRoundsUp", 1, 24, 3},
                                         RateRow{"belowHalfRoundsDown", 1, 25, 2},
                                         RateRow{"nothing", 1, 600, 0},
                                         RateRow{"fast", 3, 0.6, 300}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft
