// SPDX-License-Identifier: MIT
#include "platform/linux/TrayIconSizes.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

TrayLook look(const char* name, bool isTemplate, TrayTint tint = TrayTint::none) {
    const QImage picture(QStringLiteral(SAYLOFT_IMAGES_DIR "/") + QString::fromLatin1(name));
    return {.image = {.name = {}, .picture = picture, .size = {18, 18}, .isTemplate = isTemplate},
            .tint = tint,
            .title = {},
            .reason = {}};
}

QImage ofHeight(const std::vector<QImage>& icons, int height) {
    for (const QImage& icon : icons) {
        if (icon.height() == height)
            return icon;
    }
    return {};
}

struct TintRow {
    const char* name;
    TrayTint tint;
    QColor colour;
};

class ATemplate : public testing::TestWithParam<TintRow> {};

TEST_P(ATemplate, takesItsTint) {
    // The middle bar of the icon is full.
    const QImage icon = ofHeight(trayIconSizes(look("MenuIcon.png", true, GetParam().tint)), 72);
    const QColor shown = icon.pixelColor(36, 50);
    EXPECT_NEAR(shown.red(), GetParam().colour.red(), 1);
    EXPECT_NEAR(shown.green(), GetParam().colour.green(), 1);
    EXPECT_NEAR(shown.blue(), GetParam().colour.blue(), 1);
    EXPECT_EQ(shown.alpha(), GetParam().colour.alpha());
    EXPECT_EQ(icon.pixelColor(0, 0).alpha(), 0);
}

INSTANTIATE_TEST_SUITE_P(Tints, ATemplate,
                         testing::Values(TintRow{"none", TrayTint::none, {134, 134, 134}},
                                         TintRow{"dimmed", TrayTint::dimmed, {134, 134, 134, 140}},
                                         TintRow{"warning", TrayTint::warning, {255, 149, 0}}),
                         [](const auto& row) { return row.param.name; });

TEST(APicture, keepsItsOwnColours) {
    const QImage icon = ofHeight(trayIconSizes(look("MenuIconActive.png", false)), 72);
    EXPECT_EQ(icon.pixelColor(36, 4), QColor(224, 49, 43));
    EXPECT_EQ(icon.pixelColor(36, 48), QColor(255, 255, 255));
}

class ASize : public testing::TestWithParam<int> {};

// The middle bar is two points wide, from the eighth to the tenth: sharp when nothing is half full.
TEST_P(ASize, thatIsAMultipleOf18HasSharpEdges) {
    const int scale = GetParam() / 18;
    const QImage icon = ofHeight(trayIconSizes(look("MenuIcon.png", true)), GetParam());
    ASSERT_EQ(icon.width(), GetParam());
    const int y = 12 * scale + scale / 2;
    for (int x = 7 * scale; x < 11 * scale; ++x)
        EXPECT_EQ(icon.pixelColor(x, y).alpha(), x >= 8 * scale && x < 10 * scale ? 255 : 0)
            << "at " << x;
}

INSTANTIATE_TEST_SUITE_P(Sizes, ASize, testing::Values(18, 36, 54, 72),
                         testing::PrintToStringParamName());

TEST(ALook, withoutAPictureHasNoSizes) {
    EXPECT_TRUE(trayIconSizes({}).empty());
}

}  // namespace
}  // namespace sayloft
