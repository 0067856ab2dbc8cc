// SPDX-License-Identifier: MIT
#include "ui/StatusColours.h"

#include <cmath>

namespace sayloft {
namespace {

const QColor green(52, 199, 89);
const QColor orange(255, 149, 0);

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor& from, const QColor& to, double part) {
    const auto channel = [part](double a, double b) {
        return static_cast<float>(a + (b - a) * part);
    };
    return QColor::fromRgbF(channel(from.redF(), to.redF()), channel(from.greenF(), to.greenF()),
                            channel(from.blueF(), to.blueF()));
}

/// As near to `wanted` as can be read: it goes towards the colour of plain text as far as needed.
QColor readable(const QColor& wanted, const QColor& text, const QColor& background) {
    constexpr int steps = 20;
    for (int step = 0; step < steps; ++step) {
        const QColor colour = mixed(wanted, text, static_cast<double>(step) / steps);
        if (contrast(colour, background) >= readableContrast)
            return colour;
    }
    return text;
}

QColor wantedColour(TextRole role, const QColor& text, const QColor& background) {
    switch (role) {
        case TextRole::secondary:
            return mixed(text, background, 0.3);
        case TextRole::tertiary:
            return mixed(text, background, 0.5);
        case TextRole::good:
            return green;
        case TextRole::warning:
            return orange;
        case TextRole::primary:
            break;
    }
    return text;
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return a > b ? a / b : b / a;
}

QColor textColour(TextRole role, const QPalette& palette) {
    const QColor text = palette.color(QPalette::Active, QPalette::WindowText);
    const QColor background = palette.color(QPalette::Active, QPalette::Window);
    return readable(wantedColour(role, text, background), text, background);
}

}  // namespace sayloft
