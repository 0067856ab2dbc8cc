// SPDX-License-Identifier: MIT
#include "ui/AnimationTimes.h"

#include <cmath>
#include <ostream>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

struct Tens {
    int milliseconds;
    int rounded;
};

TEST(AnimationTimes, areShownInTensWithHalvesUpward) {
    for (const Tens& row :
         {Tens{0, 0}, {4, 0}, {5, 10}, {14, 10}, {15, 20}, {63, 60}, {4968, 4970}})
        EXPECT_EQ(toTens(row.milliseconds), row.rounded) << row.milliseconds;
}

struct Typed {
    const char* name;
    const char16_t* text;
    std::int64_t milliseconds;
};

void PrintTo(const Typed& typed, std::ostream* stream) {
    *stream << typed.name;
}

class TypedMilliseconds : public testing::TestWithParam<Typed> {};

TEST_P(TypedMilliseconds, areItsDigits) {
    EXPECT_EQ(typedMilliseconds(QString::fromUtf16(GetParam().text)), GetParam().milliseconds);
}

INSTANTIATE_TEST_SUITE_P(
    Table, TypedMilliseconds,
    testing::Values(Typed{"plain", u"250", 250}, Typed{"with_unit", u"250 ms", 250},
                    Typed{"signs_do_not_count", u"-250", 250},
                    Typed{"points_do_not_count", u"1.5 s", 15},
                    Typed{"digits_anywhere", u"a1b2", 12}, Typed{"letters_only", u"fast", 0},
                    Typed{"nothing", u"", 0},
                    Typed{"largest", u"9223372036854775807", 9223372036854775807},
                    Typed{"too_large", u"9223372036854775808", 0},
                    Typed{"very_long", u"99999999999999999999999999", 0},
                    Typed{"leading_zeros", u"000000000000000000000000250", 250},
                    Typed{"numerals_that_are_no_digits", u"2²5", 0},
                    Typed{"roman_numeral", u"Ⅷ", 0}, Typed{"fraction", u"½", 0},
                    Typed{"arabic_digits", u"٢٥٠", 0}, Typed{"mathematical_digit", u"𝟚", 0}),
    [](const auto& row) { return row.param.name; });

struct SpeedOfMs {
    std::int64_t milliseconds;
    double rate;
    int shown;
};

TEST(SpeedRates, belongToTheMillisecondsThatAreTyped) {
    const auto rate = [](double frames) { return 1 - std::pow(0.05, 1 / frames); };
    for (const SpeedOfMs& row : {SpeedOfMs{0, 0.55, 60},
                                 {10, 0.55, 60},
                                 {60, 0.55, 60},
                                 {70, rate(4.2), 70},
                                 {250, rate(15), 250},
                                 {470, rate(28.2), 470},
                                 {475, 0.1, 470},
                                 {1000, 0.1, 470},
                                 {5000, 0.1, 470},
                                 {9223372036854775807, 0.1, 470}}) {
        EXPECT_NEAR(rateForMs(row.milliseconds), row.rate, 1e-12) << row.milliseconds;
        EXPECT_EQ(shownMsOfRate(rateForMs(row.milliseconds)), row.shown) << row.milliseconds;
    }
}

TEST(SpeedRates, areSnappedToWhatIsShown) {
    EXPECT_NEAR(snappedRate(0.1), 1 - std::pow(0.05, 1 / 28.2), 1e-12);
    EXPECT_DOUBLE_EQ(snappedRate(0.55), 0.55);
    EXPECT_NEAR(snappedRate(0.3), 1 - std::pow(0.05, 1 / 8.4), 1e-12);
}

TEST(SpeedRates, stayWhereTheyAreOnceSnapped) {
    for (int milliseconds = 60; milliseconds <= 470; milliseconds += 10) {
        const double rate = rateForMs(milliseconds);
        EXPECT_EQ(shownMsOfRate(rate), milliseconds);
        EXPECT_DOUBLE_EQ(snappedRate(rate), rate);
    }
}

TEST(SpeedRates, areTenMillisecondsShorterAStep) {
    EXPECT_EQ(shownMsOfRate(fasterRate(rateForMs(250), 1)), 240);
    EXPECT_EQ(shownMsOfRate(fasterRate(rateForMs(250), -5)), 300);
    EXPECT_EQ(shownMsOfRate(fasterRate(rateForMs(60), 1)), 60);
    EXPECT_EQ(shownMsOfRate(fasterRate(rateForMs(470), -1)), 470);
}

struct Hold {
    std::int64_t milliseconds;
    double seconds;
};

TEST(HoldTimes, areWhatIsTypedUpToFourSeconds) {
    for (const Hold& row : {Hold{0, 0}, {5, 0.005}, {1500, 1.5}, {4000, 4}, {9000, 4}})
        EXPECT_DOUBLE_EQ(holdForMs(row.milliseconds), row.seconds) << row.milliseconds;
}

TEST(HoldTimes, areSnappedToTens) {
    EXPECT_DOUBLE_EQ(snappedHold(1.234), 1.23);
    EXPECT_DOUBLE_EQ(snappedHold(1.2345), 1.24);
    EXPECT_DOUBLE_EQ(snappedHold(3.999), 4);
    EXPECT_DOUBLE_EQ(snappedHold(0.004), 0);
}

TEST(HoldTimes, areTenMillisecondsLongerAStep) {
    EXPECT_DOUBLE_EQ(longerHold(1, 5), 1.05);
    EXPECT_DOUBLE_EQ(longerHold(0.02, -5), 0);
    EXPECT_DOUBLE_EQ(longerHold(4, 1), 4);
}

TEST(Milliseconds, haveTheirUnit) {
    EXPECT_EQ(millisecondsText(250), QStringLiteral("250 ms"));
}

}  // namespace
}  // namespace sayloft
