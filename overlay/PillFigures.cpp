// SPDX-License-Identifier: MIT
#include "overlay/PillFigures.h"

#include "overlay/PillGeometry.h"

#include <QPainter>

namespace sayloft {
namespace {

void draw(QPainter& painter, const PillStats& stats, double presence) {
    paintPillStats(painter, stats, {PillGeometry::statsCenterX(), PillGeometry::pillCenterY},
                   presence);
}

}  // namespace

void PillFigures::paint(QPainter& painter, const PillStats& stats, double presence) {
    if (presence < 1) {
        draw(painter, stats, presence);
        return;
    }
    if (stats != m_keptStats)
        m_kept.forget();
    m_keptStats = stats;
    m_kept.paint(painter, [&stats](QPainter& picture) { draw(picture, stats, 1); });
}

}  // namespace sayloft
