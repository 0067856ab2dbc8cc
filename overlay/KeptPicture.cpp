// SPDX-License-Identifier: MIT
#include "overlay/KeptPicture.h"

#include "overlay/PillGeometry.h"

#include <QPainter>

namespace sayloft {
namespace {

QPixmap drawn(double scale, const std::function<void(QPainter&)>& draw) {
    QPixmap pixmap((scale * QSizeF(PillGeometry::viewW, PillGeometry::viewH)).toSize());
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    draw(painter);
    return pixmap;
}

}  // namespace

void KeptPicture::paint(QPainter& painter, const std::function<void(QPainter&)>& draw) {
    const double scale = painter.device()->devicePixelRatioF();
    if (m_pixmap.isNull() || m_pixmap.devicePixelRatioF() != scale)
        m_pixmap = drawn(scale, draw);
    painter.drawPixmap(0, 0, m_pixmap);
}

}  // namespace sayloft
