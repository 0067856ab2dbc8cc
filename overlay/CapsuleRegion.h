// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QRegion>

namespace sayloft {

/// The pixels whose centres are within a capsule, a rectangle at least as wide as high whose ends
/// are round. Given in points with the y axis pointing down; a point is `scale` pixels wide.
[[nodiscard]] QRegion capsuleRegion(const QRectF& capsule, double scale);

}  // namespace sayloft
