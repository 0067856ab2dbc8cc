// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QSizeF>

class QColor;
class QPainter;

namespace sayloft {

/// Draws the blurred shadow of a capsule, a rectangle at least as wide as high whose ends are
/// round. `blur` is a blur radius as window systems and CSS have it, twice the standard deviation.
/// Nothing of it is left at the right edge of the view.
void paintPillShadow(QPainter& painter, const QRectF& capsule, double blur, const QColor& colour,
                     const QSizeF& view);

}  // namespace sayloft
