// SPDX-License-Identifier: MIT
#include "ui/SystemFont.h"

#include <QApplication>
#include <QFontInfo>

#include <algorithm>
#include <cmath>

namespace sayloft {

constexpr double ordinaryPoints = 13;
constexpr double largestOrdinaryPixels = 15;  ///< of the fonts that desktops come with

QFont systemFont(double points, QFont::Weight weight) {
    QFont font = QApplication::font();
    const double factor = points / ordinaryPoints;
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(static_cast<int>(std::lround(font.pixelSize() * factor)));
    font.setWeight(weight);
    return font;
}

int widthForFont(int width) {
    const double pixels = QFontInfo(QApplication::font()).pixelSize();
    return static_cast<int>(std::lround(width * std::max(1.0, pixels / largestOrdinaryPixels)));
}

}  // namespace sayloft
