// SPDX-License-Identifier: MIT
#include "ui/DrawableText.h"

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QString>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

const QString withWidePlus = QStringLiteral("＋ Add");

TEST(DrawableText, hasOnlySignsThatTheSystemsFontsHave) {
    const QFont font = QApplication::font();
    const QString text = drawableText(withWidePlus, font);
    for (const QChar each : text)
        EXPECT_TRUE(QFontMetrics(font).inFont(each)) << static_cast<int>(each.unicode());
    EXPECT_TRUE(text.endsWith(QStringLiteral(" Add")));
}

TEST(DrawableText, isTheTextItselfWhereAFontHasTheSign) {
    const QFont font = QApplication::font();
    const bool has = QFontMetrics(font).inFont(QChar(0xFF0B));
    EXPECT_EQ(drawableText(withWidePlus, font) == withWidePlus, has);
    EXPECT_EQ(drawableText(QStringLiteral("→ Add"), font), QStringLiteral("→ Add"));
}

}  // namespace
}  // namespace sayloft
