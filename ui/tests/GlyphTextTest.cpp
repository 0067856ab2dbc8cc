// SPDX-License-Identifier: MIT
#include "ui/GlyphText.h"

#include <QApplication>
#include <QFontMetrics>
#include <QRawFont>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

const QString wide = QStringLiteral("＋ Add");
const QString plain = QStringLiteral("+ Add");

TEST(GlyphText, hasOnlySignsThatTheSystemsFontsHave) {
    const QFont font = QApplication::font();
    for (const QChar each : displayable(wide, plain, font))
        EXPECT_TRUE(QFontMetrics(font).inFont(each)) << static_cast<int>(each.unicode());
}

TEST(GlyphText, isTheTextItselfWhereTheFontsHaveAllOfIt) {
    const QFont font = QApplication::font();
    EXPECT_EQ(displayable(plain, QStringLiteral("plainer"), font), plain);
    EXPECT_EQ(displayable(wide, plain, font) == wide, QFontMetrics(font).inFont(QChar(0xFF0B)));
}

TEST(GlyphText, isTheTextItselfWhereAnotherFontHelpsOut) {
    const QString tick = QStringLiteral("✓ Ready");
    const QFont serif(QStringLiteral("DejaVu Serif"));
    ASSERT_FALSE(QRawFont::fromFont(serif).supportsCharacter(QChar(0x2713)));
    EXPECT_EQ(displayable(tick, plain, serif), tick);
}

TEST(GlyphText, isThePlainerOneForASignThatNoFontHas) {
    EXPECT_EQ(displayable(QString::fromUcs4(U"\U0010FFFD"), plain, QApplication::font()), plain);
}

}  // namespace
}  // namespace sayloft
