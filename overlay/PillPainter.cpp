// SPDX-License-Identifier: MIT
#include "overlay/PillPainter.h"

#include "overlay/PillColours.h"
#include "overlay/PillGeometry.h"
#include "overlay/PillStats.h"

#include <QPainter>

#include <algorithm>

namespace sayloft {
namespace {

/// From here on no colour differs from that of a pill that is fully there.
constexpr double fullFrom = 0.999;

}  // namespace

PillPainter::PillPainter(QPainter& painter, const PillAnimation& pill, PillAnimation::TimePoint now)
    : m_painter(painter),
      m_pill(pill),
      m_now(now),
      m_presence(pill.presence < fullFrom ? std::max(pill.presence, 0.0) : 1.0) {}

void PillPainter::paint(Layers& layers, PillBackground background) {
    if (!m_pill.isVisible())
        return;
    const bool minimal = m_pill.minimal;
    layers.backdrop.paint(m_painter,
                          {.minimal = minimal, .background = background, .presence = m_presence});

    const QPointF center = onScreen(PillGeometry{minimal}.pill()).center();
    const double scale = pillScale(m_presence);
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(Qt::NoPen);
    m_painter.translate(center);
    m_painter.scale(scale, scale);
    m_painter.translate(-center);
    paintBars();
    if (!minimal) {
        paintSeparator();
        layers.figures.paint(m_painter, pillStats(m_pill, m_now), m_presence);
    }
    m_painter.restore();
}

void PillPainter::paintBars() {
    for (int i = 0; i < PillGeometry::bars; ++i) {
        const double height = barHeight(i, m_pill.level, m_pill.phase);
        fillRounded(PillGeometry::bar(i, height), PillGeometry::barWidth() / 2,
                    white(m_presence * barOpacity(i)));
    }
}

void PillPainter::paintSeparator() {
    m_painter.fillRect(onScreen(PillGeometry::separator()), white(0.14 * m_presence));
}

void PillPainter::fillRounded(const QRectF& rect, double radius, const QColor& colour) {
    m_painter.setBrush(colour);
    m_painter.drawRoundedRect(onScreen(rect), radius, radius);
}

}  // namespace sayloft
