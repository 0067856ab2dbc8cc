// SPDX-License-Identifier: MIT
#include "overlay/CapsuleRegion.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace sayloft {
namespace {

/// Whether the centre of a pixel is within the capsule.
bool isInside(const QRectF& capsule, double scale, int x, int y) {
    const double radius = capsule.height() / 2;
    const double px = (x + 0.5) / scale;
    const double py = (y + 0.5) / scale;
    const double nearest =
        std::min(std::max(px, capsule.left() + radius), capsule.right() - radius);
    return std::hypot(px - nearest, py - capsule.center().y()) < radius;
}

class CapsuleRegionAt : public testing::TestWithParam<double> {};

TEST_P(CapsuleRegionAt, hasExactlyThePixelsWithin) {
    const QRectF capsule(75.3, 28.2, 190.6, 53.9);
    const double scale = GetParam();
    const QRegion region = capsuleRegion(capsule, scale);
    for (int y = 0; y < 110 * scale; ++y) {
        for (int x = 0; x < 340 * scale; ++x)
            ASSERT_EQ(region.contains(QPoint(x, y)), isInside(capsule, scale, x, y))
                << x << ", " << y;
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, CapsuleRegionAt, testing::Values(1.0, 1.25, 1.5, 2.0));

TEST(CapsuleRegion, isEmptyForNothing) {
    EXPECT_TRUE(capsuleRegion({}, 1).isEmpty());
}

}  // namespace
}  // namespace sayloft
