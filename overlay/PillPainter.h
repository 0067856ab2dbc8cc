// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/PillAnimation.h"
#include "overlay/PillBackdrop.h"
#include "overlay/PillFigures.h"

class QColor;
class QPainter;
class QRectF;

namespace sayloft {

/// Draws the pill as it is at one moment into a view of 340 by 110 points. Sharp at any scale of
/// the painter's device.
class PillPainter {
public:
    /// What is kept from one frame to the next.
    struct Layers {
        PillBackdrop backdrop;
        PillFigures figures;
    };

    PillPainter(QPainter& painter, const PillAnimation& pill, PillAnimation::TimePoint now);

    void paint(Layers& layers, PillBackground background);

private:
    void paintBars();
    void paintSeparator();
    void fillRounded(const QRectF& rect, double radius, const QColor& colour);

    QPainter& m_painter;
    const PillAnimation& m_pill;
    PillAnimation::TimePoint m_now;
    double m_presence;
};

}  // namespace sayloft
