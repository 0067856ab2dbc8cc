// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>

namespace sayloft {

/// Where the parts of the pill are in its view of 340 by 110 points. The y axis points up from the
/// bottom left, so a rectangle's `top()` is its lower edge.
struct PillGeometry {
    static constexpr double viewW = 340;
    static constexpr double viewH = 110;
    static constexpr int bars = 18;
    static constexpr double pillCenterY = 55;
    static constexpr double activeW = 190;  ///< of the bars' part, which is all of a minimal pill
    static constexpr double activeH = 54;
    static constexpr double statsW = 66;  ///< of the figures beside it
    static constexpr double cornerRadius = activeH / 2;

    bool minimal = false;

    /// The same for both styles: the full pill grows to the right.
    [[nodiscard]] static double left();
    [[nodiscard]] double width() const;
    [[nodiscard]] double centerX() const;
    [[nodiscard]] QRectF pill() const;
    /// The pill scaled about its centre.
    [[nodiscard]] QRectF scaledPill(double scale) const;

    [[nodiscard]] static QRectF bar(int index, double height);
    [[nodiscard]] static double barWidth();
    [[nodiscard]] static QRectF separator();
    [[nodiscard]] static double statsCenterX();
};

/// The same rectangle with the y axis pointing down from the top left.
[[nodiscard]] QRectF onScreen(const QRectF& rect);

/// 0.62 for a presence of 0, 1 for 1, along a smoothstep curve.
[[nodiscard]] double pillScale(double presence);

/// How far a bar may rise, 0 at both ends, about 1 in the middle.
[[nodiscard]] double barEnvelope(int index);
/// From the width of a bar, which makes it a dot, to 30. `level` is 0 to 1.
[[nodiscard]] double barHeight(int index, double level, double phase);
/// Outer bars are dimmer; 0.55 to 1.
[[nodiscard]] double barOpacity(int index);

}  // namespace sayloft
