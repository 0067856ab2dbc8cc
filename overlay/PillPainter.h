// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/PillAnimation.h"
#include "overlay/PillGeometry.h"

#include <QRectF>

class QColor;
class QPainter;

namespace sayloft {

/// What can be seen behind the pill.
enum class PillBackground {
    black,    ///< nothing: the window cannot be seen through
    clear,    ///< what lies below, as it is
    blurred,  ///< what lies below, out of focus
};

/// Draws the pill as it is at one moment into a view of 340 by 110 points. Sharp at any scale of
/// the painter's device.
class PillPainter {
public:
    PillPainter(QPainter& painter, const PillAnimation& pill, PillAnimation::TimePoint now,
                PillBackground background);

    void paint();

private:
    void paintShadow();
    void paintBody();
    void paintFill();
    void paintBars();
    void paintSeparator();
    void paintStats();
    void fillRounded(const QRectF& rect, double radius, const QColor& colour);

    QPainter& m_painter;
    const PillAnimation& m_pill;
    PillAnimation::TimePoint m_now;
    PillBackground m_background;
    PillGeometry m_geometry;
    double m_presence;
    double m_scale;
};

/// The same rectangle with the y axis pointing down from the top left.
[[nodiscard]] QRectF onScreen(const QRectF& rect);

}  // namespace sayloft
