// SPDX-License-Identifier: MIT
#include "overlay/PillStats.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
constexpr PillAnimation::TimePoint begin{1h};

PillStats secondsShown(double seconds) {
    PillAnimation pill;
    pill.frozenElapsed = seconds;
    return pillStats(pill, begin);
}

PillStats wordsShown(double wpm) {
    PillAnimation pill;
    pill.mode = StatMode::wpm;
    pill.wpmDisplay = wpm;
    return pillStats(pill, begin);
}

TEST(PillStats, showTenthsOfTheRunningSeconds) {
    PillAnimation pill;
    pill.setRecording(begin);
    EXPECT_EQ(pillStats(pill, begin + 12340ms),
              (PillStats{QStringLiteral("12.3"), QStringLiteral("sec")}));
}

struct Row {
    const char* name;
    double number;
    const char* text;
};

class Seconds : public testing::TestWithParam<Row> {};

TEST_P(Seconds, areShownInTenths) {
    EXPECT_EQ(secondsShown(GetParam().number).value, QLatin1String(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Table, Seconds,
                         testing::Values(Row{"none", 0, "0.0"},
                                         Row{"afterADictation", 12.34, "12.3"},
                                         Row{"roundedUp", 9.96, "10.0"},
                                         Row{"halfAnHour", 1800.04, "1800.0"}),
                         [](const auto& row) { return row.param.name; });

class Words : public testing::TestWithParam<Row> {};

TEST_P(Words, areShownWhole) {
    EXPECT_EQ(wordsShown(GetParam().number),
              (PillStats{QLatin1String(GetParam().text), QStringLiteral("wpm")}));
}

INSTANTIATE_TEST_SUITE_P(Table, Words,
                         testing::Values(Row{"none", 0, "0"}, Row{"roundedDown", 136.49, "136"},
                                         Row{"halfAwayFromZero", 136.5, "137"},
                                         Row{"withoutGrouping", 12345.2, "12345"}),
                         [](const auto& row) { return row.param.name; });

/// The columns from the first to the last that has something of the value.
std::pair<int, int> extentOf(const QString& value) {
    QImage image(120, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    paintPillStats(painter, {value, {}}, {60, 30}, 1);
    painter.end();
    int first = image.width();
    int last = -1;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (qGray(image.pixel(x, y)) > 128) {
                first = std::min(first, x);
                last = x;
            }
        }
    }
    return {first, last};
}

TEST(PillStats, doNotJumpWhenDigitsChange) {
    const auto [left, right] = extentOf(QStringLiteral("888.8"));
    for (const char* narrow : {"811.8", "818.8", "871.8"})
        EXPECT_EQ(extentOf(QLatin1String(narrow)), std::pair(left, right)) << narrow;
}

}  // namespace
}  // namespace sayloft
