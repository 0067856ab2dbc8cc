// SPDX-License-Identifier: MIT
#include "overlay/PillBackdrop.h"

#include "overlay/PillColours.h"
#include "overlay/PillGeometry.h"
#include "overlay/PillShadow.h"

#include <QPainter>

namespace sayloft {
namespace {

/// From here on no colour differs from that of a pill that is fully there.
constexpr double fullFrom = 0.999;

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

void fill(QPainter& painter, const QRectF& capsule, const QColor& colour) {
    painter.setBrush(colour);
    painter.drawRoundedRect(capsule, capsule.height() / 2, capsule.height() / 2);
}

// Neither offset nor blur of the shadow shrink with the pill.
void draw(QPainter& painter, const PillBackdrop::Look& look) {
    const double presence = look.presence;
    const QRectF pill = onScreen(PillGeometry{look.minimal}.scaledPill(pillScale(presence)));
    painter.save();
    if (look.background != PillBackground::black)
        paintPillShadow(painter, pill.translated(0, 2), 14 * presence, grey(0, 0.4 * presence),
                        {PillGeometry::viewW, PillGeometry::viewH});
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    fill(painter, pill, grey(0.17, bodyOpacity(look.background) * presence));
    fill(painter, pill, grey(0.09, 0.15 * presence));
    painter.restore();
}

}  // namespace

void PillBackdrop::paint(QPainter& painter, Look look) {
    if (look.presence < fullFrom) {
        draw(painter, look);
        return;
    }
    look.presence = 1;
    const double scale = painter.device()->devicePixelRatioF();
    if (m_kept.isNull() || m_kept.devicePixelRatioF() != scale || m_keptLook != look)
        keep(look, scale);
    painter.drawPixmap(0, 0, m_kept);
}

void PillBackdrop::keep(const Look& look, double scale) {
    m_kept = QPixmap((scale * QSizeF(PillGeometry::viewW, PillGeometry::viewH)).toSize());
    m_kept.setDevicePixelRatio(scale);
    m_kept.fill(Qt::transparent);
    m_keptLook = look;
    QPainter painter(&m_kept);
    draw(painter, look);
}

}  // namespace sayloft
