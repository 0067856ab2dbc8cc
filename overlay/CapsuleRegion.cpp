// SPDX-License-Identifier: MIT
#include "overlay/CapsuleRegion.h"

#include <QRect>

#include <cmath>
#include <vector>

namespace sayloft {
namespace {

/// The first pixel whose centre is at or beyond this coordinate.
int firstPixel(double coordinate) {
    return static_cast<int>(std::ceil(coordinate - 0.5));
}

}  // namespace

QRegion capsuleRegion(const QRectF& capsule, double scale) {
    const double radius = capsule.height() / 2 * scale;
    const double middle = capsule.center().y() * scale;
    const double leftEnd = capsule.left() * scale + radius;
    const double rightEnd = capsule.right() * scale - radius;
    std::vector<QRect> rows;
    for (int y = firstPixel(middle - radius); y < firstPixel(middle + radius); ++y) {
        const double distance = y + 0.5 - middle;
        const double halfChord = std::sqrt(radius * radius - distance * distance);
        const int begin = firstPixel(leftEnd - halfChord);
        const int end = firstPixel(rightEnd + halfChord);
        if (begin < end)
            rows.emplace_back(begin, y, end - begin, 1);
    }
    QRegion region;
    region.setRects(rows.data(), static_cast<int>(rows.size()));
    return region;
}

}  // namespace sayloft
