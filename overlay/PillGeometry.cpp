// SPDX-License-Identifier: MIT
#include "overlay/PillGeometry.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace sayloft {
namespace {

constexpr double barsMargin = 22;
constexpr double slotW = (PillGeometry::activeW - 2 * barsMargin) / PillGeometry::bars;
constexpr double barW = 0.42 * slotW;
constexpr double highestBar = 30;
constexpr double middleBar = (PillGeometry::bars - 1) / 2.0;

double ripple(int index, double phase) {
    return std::sin(0.7 * index + 0.25 * phase) * 0.45 + 0.55;
}

}  // namespace

double PillGeometry::left() {
    return viewW / 2 - activeW / 2;
}

double PillGeometry::width() const {
    return minimal ? activeW : activeW + statsW;
}

double PillGeometry::centerX() const {
    return left() + width() / 2;
}

QRectF PillGeometry::pill() const {
    return scaledPill(1);
}

QRectF PillGeometry::scaledPill(double scale) const {
    QRectF rect(0, 0, scale * width(), scale * activeH);
    rect.moveCenter({centerX(), pillCenterY});
    return rect;
}

QRectF PillGeometry::bar(int index, double height) {
    return {left() + barsMargin + slotW * index + (slotW - barW) / 2, pillCenterY - height / 2,
            barW, height};
}

double PillGeometry::barWidth() {
    return barW;
}

QRectF PillGeometry::separator() {
    return {left() + activeW - 0.5, 37, 1, 36};
}

double PillGeometry::statsCenterX() {
    return left() + activeW + statsW / 2;
}

QRectF onScreen(const QRectF& rect) {
    return {rect.x(), PillGeometry::viewH - rect.y() - rect.height(), rect.width(), rect.height()};
}

double pillScale(double presence) {
    return 0.62 + 0.38 * presence * presence * (3 - 2 * presence);
}

double barEnvelope(int index) {
    const double angle = (index - middleBar) / middleBar * std::numbers::pi / 2;
    return std::pow(std::cos(angle), 1.3);
}

double barHeight(int index, double level, double phase) {
    const double rise = ripple(index, phase) * barEnvelope(index) * level * (highestBar - barW);
    return std::max(rise + barW, barW);
}

double barOpacity(int index) {
    return 0.45 * barEnvelope(index) + 0.55;
}

}  // namespace sayloft
