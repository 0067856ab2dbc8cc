// SPDX-License-Identifier: MIT
#include "ui/LabelColours.h"

#include <QColor>
#include <QPalette>

namespace sayloft {
namespace {

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() <
           palette.color(QPalette::WindowText).lightnessF();
}

/// The text's colour mixed into the background, opaque, so that it is the same on every style.
QColor faded(const QPalette& palette, float share) {
    const QColor text = palette.color(QPalette::WindowText);
    const QColor window = palette.color(QPalette::Window);
    const auto mix = [share](float a, float b) { return share * a + (1 - share) * b; };
    return QColor::fromRgbF(mix(text.redF(), window.redF()), mix(text.greenF(), window.greenF()),
                            mix(text.blueF(), window.blueF()));
}

}  // namespace

QColor metColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0x62, 0xd2, 0x7e) : QColor(0x1a, 0x6c, 0x2d);
}

QColor missingColour(const QPalette& palette) {
    return isDark(palette) ? QColor(0xff, 0xb0, 0x60) : QColor(0x99, 0x44, 0x00);
}

QColor secondaryColour(const QPalette& palette) {
    return faded(palette, 0.85F);
}

QColor tertiaryColour(const QPalette& palette) {
    return faded(palette, 0.72F);
}

}  // namespace sayloft
