// SPDX-License-Identifier: MIT
#pragma once

#include "overlay/PillAnimation.h"

#include <QPointF>
#include <QString>

class QPainter;

namespace sayloft {

/// The two texts beside the bars.
struct PillStats {
    QString value;
    QString unit;

    bool operator==(const PillStats&) const = default;
};

[[nodiscard]] PillStats pillStats(const PillAnimation& pill, PillAnimation::TimePoint now);

/// Draws the value above its unit, both centred on `center` as one block. Every digit takes the
/// width of the widest, so that a running number does not jump. `opacity` is 0 to 1.
void paintPillStats(QPainter& painter, const PillStats& stats, QPointF center, double opacity);

}  // namespace sayloft
