// SPDX-License-Identifier: MIT
#include "ui/TextLabel.h"

#include "ui/tests/KeptLook.h"

#include <QApplication>
#include <QFontInfo>
#include <QHBoxLayout>
#include <QPalette>
#include <QStyleFactory>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

class TextLabelTest : public testing::Test {
protected:
    static void useFont(int pixels) {
        QFont font = QApplication::font();
        font.setPixelSize(pixels);
        QApplication::setFont(font);
        QApplication::processEvents();
    }

    static void usePalette(QRgb window, QRgb text) {
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(window));
        palette.setColor(QPalette::WindowText, QColor(text));
        QApplication::setPalette(palette);
        QApplication::processEvents();
    }

    const test::KeptLook m_before;
};

QColor colourOf(const QLabel& label) {
    return label.palette().color(QPalette::WindowText);
}

TEST_F(TextLabelTest, isAsLargeAsItsShareOfTheSystemsFont) {
    useFont(26);
    const TextLabel ordinary(QStringLiteral("text"), {});
    const TextLabel small(QStringLiteral("text"), {.look = {.size = 11}});
    const TextLabel header(QStringLiteral("text"), {.look = {.size = 18, .weight = QFont::Bold}});
    EXPECT_EQ(ordinary.font().pixelSize(), 26);
    EXPECT_EQ(small.font().pixelSize(), 22);
    EXPECT_EQ(header.font().pixelSize(), 36);
    EXPECT_EQ(header.font().weight(), QFont::Bold);
}

TEST_F(TextLabelTest, followsTheSystemsFont) {
    useFont(13);
    QWidget window;
    followDesktop(window);
    auto* label = new TextLabel(QStringLiteral("text"), {.look = {.size = 11}});
    (new QHBoxLayout(&window))->addWidget(label);
    EXPECT_EQ(label->font().pixelSize(), 11);
    useFont(26);
    EXPECT_EQ(label->font().pixelSize(), 22);
}

TEST_F(TextLabelTest, followsThePalette) {
    usePalette(0xffffffff, 0xff000000);
    QWidget window;
    auto* label = new TextLabel(QStringLiteral("text"), {.look = {.role = TextRole::secondary}});
    (new QHBoxLayout(&window))->addWidget(label);
    followDesktop(window);
    const QColor onLight = colourOf(*label);
    EXPECT_EQ(onLight, textColour(TextRole::secondary, QApplication::palette()));
    usePalette(0xff202020, 0xffffffff);
    EXPECT_EQ(colourOf(*label), textColour(TextRole::secondary, QApplication::palette()));
    EXPECT_NE(colourOf(*label), onLight);
}

TEST_F(TextLabelTest, hasTheOrdinaryColourUnlessToldOtherwise) {
    usePalette(0xff202020, 0xffeeeeee);
    const TextLabel label(QStringLiteral("text"), {});
    EXPECT_EQ(colourOf(label), QColor(0xffeeeeee));
}

TEST_F(TextLabelTest, isAsWideAsTold) {
    useFont(13);
    EXPECT_EQ(TextLabel(QStringLiteral("short"), {.width = 130}).sizeHint().width(), 130);
}

TEST_F(TextLabelTest, isWiderThanToldWhereTheTextIs) {
    useFont(13);
    EXPECT_GT(TextLabel(QString(60, QLatin1Char('w')), {.width = 130}).sizeHint().width(), 300);
}

TEST_F(TextLabelTest, wrapsAtItsWidth) {
    useFont(13);
    const QString text = QStringLiteral("word ").repeated(40);
    const TextLabel wrapped(text, {.width = 200, .wraps = true});
    const TextLabel line(QStringLiteral("word"), {});
    EXPECT_EQ(wrapped.sizeHint().width(), 200);
    EXPECT_GT(wrapped.sizeHint().height(), 3 * line.sizeHint().height());
}

TEST_F(TextLabelTest, needsNoMoreLinesWithALargerFont) {
    const QString text = QStringLiteral("word ").repeated(40);
    useFont(15);
    const TextLabel label(text, {.width = 200, .wraps = true});
    const int lines = label.sizeHint().height() / label.fontMetrics().lineSpacing();
    useFont(30);
    EXPECT_EQ(label.sizeHint().width(), 400);
    EXPECT_LE(label.sizeHint().height() / label.fontMetrics().lineSpacing(), lines + 1);
}

}  // namespace
}  // namespace sayloft
