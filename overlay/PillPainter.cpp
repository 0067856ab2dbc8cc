// SPDX-License-Identifier: MIT
#include "overlay/PillPainter.h"

#include "overlay/PillColours.h"
#include "overlay/PillShadow.h"
#include "overlay/PillStats.h"

#include <QPainter>

#include <algorithm>

namespace sayloft {
namespace {

/// How much of the body is there to keep white figures readable over a white page.
double bodyOpacity(PillBackground background) {
    switch (background) {
        case PillBackground::blurred:
            return 0.62;
        case PillBackground::clear:
            return 0.84;
        case PillBackground::black:
            return 1.0;
    }
    return 1.0;
}

}  // namespace

QRectF onScreen(const QRectF& rect) {
    return {rect.x(), PillGeometry::viewH - rect.y() - rect.height(), rect.width(), rect.height()};
}

PillPainter::PillPainter(QPainter& painter, const PillAnimation& pill, PillAnimation::TimePoint now,
                         PillBackground background)
    : m_painter(painter),
      m_pill(pill),
      m_now(now),
      m_background(background),
      m_geometry{pill.minimal},
      m_presence(std::clamp(pill.presence, 0.0, 1.0)),
      m_scale(pillScale(m_presence)) {}

void PillPainter::paint() {
    if (!m_pill.isVisible())
        return;
    m_painter.save();
    m_painter.setPen(Qt::NoPen);
    paintShadow();
    m_painter.setRenderHint(QPainter::Antialiasing);
    paintBody();
    const QPointF center = onScreen(m_geometry.pill()).center();
    m_painter.translate(center);
    m_painter.scale(m_scale, m_scale);
    m_painter.translate(-center);
    paintFill();
    paintBars();
    if (!m_pill.minimal) {
        paintSeparator();
        paintStats();
    }
    m_painter.restore();
}

// Neither offset nor blur shrink with the pill.
void PillPainter::paintShadow() {
    if (m_background == PillBackground::black)
        return;
    const QRectF caster = onScreen(m_geometry.scaledPill(m_scale)).translated(0, 2);
    paintPillShadow(m_painter, caster, 14 * m_presence, grey(0, 0.4 * m_presence));
}

void PillPainter::paintBody() {
    const QRectF body = m_geometry.scaledPill(m_scale);
    fillRounded(body, body.height() / 2, grey(0.17, bodyOpacity(m_background) * m_presence));
}

void PillPainter::paintFill() {
    fillRounded(m_geometry.pill(), PillGeometry::cornerRadius, grey(0.09, 0.15 * m_presence));
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

void PillPainter::paintStats() {
    const PillStats stats = pillStats(m_pill, m_now);
    paintPillStats(m_painter, stats, {PillGeometry::statsCenterX(), PillGeometry::pillCenterY},
                   m_presence);
}

void PillPainter::fillRounded(const QRectF& rect, double radius, const QColor& colour) {
    m_painter.setBrush(colour);
    m_painter.drawRoundedRect(onScreen(rect), radius, radius);
}

}  // namespace sayloft
