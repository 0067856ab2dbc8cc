// SPDX-License-Identifier: MIT
#include "overlay/PillBackdrop.h"

#include "overlay/PillColours.h"
#include "overlay/PillGeometry.h"
#include "overlay/PillShadow.h"

#include <QPainter>

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

void PillBackdrop::paint(QPainter& painter, const Look& look) {
    if (look.presence < 1) {
        draw(painter, look);
        return;
    }
    if (m_keptLook != look)
        m_kept.forget();
    m_keptLook = look;
    m_kept.paint(painter, [&look](QPainter& picture) { draw(picture, look); });
}

}  // namespace sayloft
