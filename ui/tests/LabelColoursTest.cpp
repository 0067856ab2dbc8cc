// SPDX-License-Identifier: MIT
#include "ui/LabelColours.h"

#include <QColor>
#include <QPalette>

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// As the Web Content Accessibility Guidelines define it; ordinary text needs 4.5.
double contrast(const QColor& a, const QColor& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

struct PaletteRow {
    const char* name;
    QRgb window;
    QRgb text;
};

class LabelColours : public testing::TestWithParam<PaletteRow> {
protected:
    [[nodiscard]] static QPalette palette() {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(GetParam().window));
        palette.setColor(QPalette::WindowText, QColor(GetParam().text));
        return palette;
    }
};

TEST_P(LabelColours, areReadable) {
    const QColor window(GetParam().window);
    EXPECT_GE(contrast(metColour(palette()), window), 4.5);
    EXPECT_GE(contrast(missingColour(palette()), window), 4.5);
    EXPECT_GE(contrast(secondaryColour(palette()), window), 4.5);
    EXPECT_GE(contrast(tertiaryColour(palette()), window), 4.5);
}

TEST_P(LabelColours, fadeStepByStep) {
    const QColor window(GetParam().window);
    EXPECT_GT(contrast(QColor(GetParam().text), window),
              contrast(secondaryColour(palette()), window));
    EXPECT_GT(contrast(secondaryColour(palette()), window),
              contrast(tertiaryColour(palette()), window));
}

TEST_P(LabelColours, areGreenAndOrange) {
    const QColor met = metColour(palette());
    const QColor missing = missingColour(palette());
    EXPECT_GT(met.green(), std::max(met.red(), met.blue()));
    EXPECT_GT(missing.red(), missing.green());
    EXPECT_GT(missing.green(), missing.blue());
}

INSTANTIATE_TEST_SUITE_P(Palettes, LabelColours,
                         testing::Values(PaletteRow{"white", 0xffffffff, 0xff000000},
                                         PaletteRow{"fusionLight", 0xffefefef, 0xff000000},
                                         PaletteRow{"greyText", 0xfff6f5f4, 0xff2e3436},
                                         PaletteRow{"fusionDark", 0xff353535, 0xffffffff},
                                         PaletteRow{"darkGrey", 0xff2a2e32, 0xfffcfcfc},
                                         PaletteRow{"black", 0xff000000, 0xffffffff}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft
