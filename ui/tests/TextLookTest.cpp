// SPDX-License-Identifier: MIT
#include "ui/TextLook.h"

#include "tests/support/WaitUntil.h"
#include "ui/tests/KeptLook.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QLabel>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class TextLookTest : public testing::Test {
protected:
    static QFont ofPoints(double points) {
        QFont font = QApplication::font();
        font.setPointSizeF(points);
        return font;
    }

    const test::KeptLook m_before;
};

TEST_F(TextLookTest, scalesWithTheFontOfTheDesktop) {
    EXPECT_DOUBLE_EQ(fontFor({.size = 13}, ofPoints(26)).pointSizeF(), 26);
    EXPECT_DOUBLE_EQ(fontFor({.size = 11}, ofPoints(26)).pointSizeF(), 22);
}

TEST_F(TextLookTest, isNeverSmallerThanItsSizeInPixels) {
    EXPECT_DOUBLE_EQ(fontFor({.size = 11}, ofPoints(9)).pointSizeF(), 8.25);
}

TEST_F(TextLookTest, isNeverLargerThanTheFontOfTheDesktop) {
    EXPECT_DOUBLE_EQ(fontFor({.size = 11}, ofPoints(7)).pointSizeF(), 7);
}

TEST_F(TextLookTest, keepsSizesThatAreGivenInPixels) {
    QFont font = QApplication::font();
    font.setPixelSize(26);
    EXPECT_EQ(fontFor({.size = 11}, font).pixelSize(), 22);
}

TEST_F(TextLookTest, hasDigitsOfOneWidthWhereThatIsAskedFor) {
    QFont font = fontFor({.digits = TextStyle::Digits::equallyWide},
                         QFont(QStringLiteral("URW Bookman"), 20));
    const QFontMetricsF metrics(font);
    EXPECT_DOUBLE_EQ(metrics.horizontalAdvance(u'1'), metrics.horizontalAdvance(u'8'));
}

TEST_F(TextLookTest, followsAChangeOfTheFont) {
    QWidget window;
    followDesktop(window);
    QLabel label(&window);
    new TextLook(&label, {.size = 11});
    QApplication::setFont(ofPoints(26));
    EXPECT_TRUE(test::waitUntil([&] { return label.font().pointSizeF() == 22; }));
}

TEST_F(TextLookTest, followsAChangeToDark) {
    QWidget window;
    followDesktop(window);
    QLabel label(&window);
    new TextLook(&label, {.role = TextRole::good});
    const QPalette dark(QColor(40, 42, 46), QColor(40, 42, 46));
    QApplication::setPalette(dark);
    const QColor green = textColour(TextRole::good, dark);
    EXPECT_TRUE(
        test::waitUntil([&] { return label.palette().color(QPalette::WindowText) == green; }));
}

TEST_F(TextLookTest, followsAChangeOfTheRole) {
    QLabel label;
    auto* look = new TextLook(&label, {.role = TextRole::good});
    look->setRole(TextRole::warning);
    EXPECT_EQ(label.palette().color(QPalette::WindowText),
              textColour(TextRole::warning, m_before.palette()));
}

}  // namespace
}  // namespace sayloft
