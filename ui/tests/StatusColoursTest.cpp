// SPDX-License-Identifier: MIT
#include "ui/StatusColours.h"

#include <ostream>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

struct Desktop {
    const char* name;
    QColor window;
    QColor text;

    [[nodiscard]] QPalette palette() const {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        return palette;
    }
};

void PrintTo(const Desktop& desktop, std::ostream* stream) {
    *stream << desktop.name;
}

class TextOn : public testing::TestWithParam<Desktop> {
protected:
    const QPalette m_palette = GetParam().palette();
};

TEST_P(TextOn, isReadable) {
    for (const TextRole role : {TextRole::primary, TextRole::secondary, TextRole::tertiary,
                                TextRole::good, TextRole::warning})
        EXPECT_GE(contrast(textColour(role, m_palette), GetParam().window), readableContrast)
            << static_cast<int>(role);
}

TEST_P(TextOn, isGreenWhenThingsAreGoodAndOrangeWhenNot) {
    const QColor good = textColour(TextRole::good, m_palette);
    const QColor warning = textColour(TextRole::warning, m_palette);
    EXPECT_GT(good.green(), good.red() + 40);
    EXPECT_GT(warning.red(), warning.blue() + 40);
    EXPECT_GT(warning.red(), warning.green());
}

TEST_P(TextOn, isPalerTheLessItMatters) {
    const auto seen = [this](TextRole role) {
        return contrast(textColour(role, m_palette), GetParam().window);
    };
    EXPECT_LT(seen(TextRole::secondary), seen(TextRole::primary));
    EXPECT_LT(seen(TextRole::tertiary), seen(TextRole::secondary));
}

INSTANTIATE_TEST_SUITE_P(Table, TextOn,
                         testing::Values(Desktop{"light", QColor(239, 239, 239), Qt::black},
                                         Desktop{"white", Qt::white, QColor(46, 52, 54)},
                                         Desktop{"dark", QColor(53, 53, 53), Qt::white},
                                         Desktop{"dark_blue", QColor(42, 46, 50),
                                                 QColor(252, 252, 252)},
                                         Desktop{"black", Qt::black, Qt::white}),
                         [](const auto& row) { return row.param.name; });

TEST(Contrast, isOneToTwentyOneOfBlackToWhite) {
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 1e-6);
    EXPECT_NEAR(contrast(Qt::white, Qt::black), 21, 1e-6);
    EXPECT_NEAR(contrast(Qt::red, Qt::red), 1, 1e-6);
}

// Where even plain text is hard to read there is nothing better than plain text.
TEST(TextColour, isThatOfPlainTextWhereNothingIsReadable) {
    const Desktop faint{"faint", QColor(128, 128, 128), QColor(160, 160, 160)};
    EXPECT_EQ(textColour(TextRole::good, faint.palette()), faint.text);
}

}  // namespace
}  // namespace sayloft
