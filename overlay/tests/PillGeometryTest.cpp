// SPDX-License-Identifier: MIT
#include "overlay/PillGeometry.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

constexpr double dot = 3.40667;
constexpr double tolerance = 5e-6;

void expectRect(const QRectF& rect, double x, double y, double width, double height) {
    EXPECT_NEAR(rect.x(), x, tolerance);
    EXPECT_NEAR(rect.y(), y, tolerance);
    EXPECT_NEAR(rect.width(), width, tolerance);
    EXPECT_NEAR(rect.height(), height, tolerance);
}

struct Style {
    const char* name;
    bool minimal;
    double width;
    double centerX;
};

class PillGeometryOf : public testing::TestWithParam<Style> {
protected:
    PillGeometry geometry{GetParam().minimal};
};

TEST_P(PillGeometryOf, hasThePillWhereTheStyleWantsIt) {
    EXPECT_EQ(PillGeometry::left(), 75);
    EXPECT_EQ(geometry.width(), GetParam().width);
    EXPECT_EQ(geometry.centerX(), GetParam().centerX);
    expectRect(geometry.pill(), 75, 28, GetParam().width, 54);
}

TEST_P(PillGeometryOf, scalesAboutTheCentre) {
    expectRect(geometry.scaledPill(0.5), GetParam().centerX - GetParam().width / 4, 55 - 13.5,
               GetParam().width / 2, 27);
}

INSTANTIATE_TEST_SUITE_P(Styles, PillGeometryOf,
                         testing::Values(Style{"minimal", true, 190, 170},
                                         Style{"full", false, 256, 203}),
                         [](const auto& row) { return row.param.name; });

struct Bar {
    int index;
    double x;
};

class BarOfThePill : public testing::TestWithParam<Bar> {};

TEST_P(BarOfThePill, isCentredInItsSlot) {
    expectRect(PillGeometry::bar(GetParam().index, 10), GetParam().x, 50, dot, 10);
}

INSTANTIATE_TEST_SUITE_P(Slots, BarOfThePill,
                         testing::Values(Bar{0, 99.352222}, Bar{1, 107.463333}, Bar{8, 164.241111},
                                         Bar{9, 172.352222}, Bar{17, 237.241111}),
                         [](const auto& row) { return "bar" + std::to_string(row.param.index); });

struct BarRow {
    const char* name;
    int index;
    double level;
    double phase;
    double height;
    double opacity;
};

class BarOfTheLevel : public testing::TestWithParam<BarRow> {};

TEST_P(BarOfTheLevel, hasTheHeightAndOpacityOfItsPlace) {
    const BarRow& row = GetParam();
    EXPECT_NEAR(barHeight(row.index, row.level, row.phase), row.height, 1e-4);
    EXPECT_NEAR(barOpacity(row.index), row.opacity, 1e-4);
}

// Computed apart from the program.
INSTANTIATE_TEST_SUITE_P(
    Table, BarOfTheLevel,
    testing::Values(BarRow{"middleAtRest", 8, 0.0, 0.0, 3.406667, 0.997506},
                    BarRow{"middleFullScale", 8, 1.0, 0.0, 10.439439, 0.997506},
                    BarRow{"middleFullScaleLater", 9, 1.0, 3.5, 27.213199, 0.997506},
                    BarRow{"quarterLoud", 4, 0.5, 10.0, 4.802946, 0.819287},
                    BarRow{"outerLoud", 1, 1.0, 20.5, 4.438284, 0.599740},
                    BarRow{"rightLoud", 14, 0.8, 123.0, 9.679537, 0.745415}),
    [](const auto& row) { return row.param.name; });

TEST(PillBars, areAllDotsInSilence) {
    for (int i = 0; i < PillGeometry::bars; ++i)
        EXPECT_NEAR(barHeight(i, 0, 3.5), dot, tolerance) << i;
}

TEST(PillBars, areDotsAtBothEndsAtEveryLevel) {
    for (const double level : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        EXPECT_NEAR(barHeight(0, level, 2), dot, tolerance) << level;
        EXPECT_NEAR(barHeight(17, level, 2), dot, tolerance) << level;
    }
}

TEST(PillBars, neverRiseAboveThirty) {
    for (int i = 0; i < PillGeometry::bars; ++i) {
        for (int tick = 0; tick < 60; ++tick)
            EXPECT_LE(barHeight(i, 1, tick * 0.5), 30 + tolerance);
    }
}

TEST(PillSeparator, standsBetweenBarsAndFigures) {
    expectRect(PillGeometry::separator(), 264.5, 37, 1, 36);
    EXPECT_EQ(PillGeometry::statsCenterX(), 298);
}

TEST(PillScale, growsAlongASmoothstep) {
    EXPECT_DOUBLE_EQ(pillScale(0), 0.62);
    EXPECT_DOUBLE_EQ(pillScale(0.25), 0.62 + 0.38 * 0.15625);
    EXPECT_DOUBLE_EQ(pillScale(0.5), 0.81);
    EXPECT_DOUBLE_EQ(pillScale(1), 1);
}

}  // namespace
}  // namespace sayloft
