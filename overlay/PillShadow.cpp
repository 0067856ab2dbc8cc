// SPDX-License-Identifier: MIT
#include "overlay/PillShadow.h"

#include <QColor>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <cmath>
#include <numbers>

namespace sayloft {
namespace {

constexpr int steps = 24;

/// How much of a straight edge's shadow is left at this distance outside it, in standard
/// deviations.
double beyondEdge(double distance) {
    return 0.5 * std::erfc(distance / std::numbers::sqrt2);
}

/// From the middle line of the capsule (0) outwards to where nothing is left (1).
QGradientStops fallOff(double halfHeight, double sigma, const QColor& colour) {
    const double reach = halfHeight + 3 * sigma;
    QGradientStops stops;
    for (int i = 0; i <= steps; ++i) {
        const double part = static_cast<double>(i) / steps;
        QColor faded = colour;
        faded.setAlphaF(
            static_cast<float>(colour.alphaF() * beyondEdge((part * reach - halfHeight) / sigma)));
        stops.append({part, faded});
    }
    stops.last().second.setAlpha(0);
    return stops;
}

// A middle and two round ends, each with a gradient of its own. Without smoothed edges, since the
// seams between them would show.
void paintWhole(QPainter& painter, const QRectF& capsule, double sigma, const QColor& colour) {
    const double halfHeight = capsule.height() / 2;
    const double reach = halfHeight + 3 * sigma;
    const QGradientStops stops = fallOff(halfHeight, sigma, colour);
    const double y = capsule.center().y();
    const QPointF leftEnd(capsule.left() + halfHeight, y);
    const QPointF rightEnd(capsule.right() - halfHeight, y);

    QLinearGradient middle(0, y, 0, y + reach);
    middle.setSpread(QGradient::ReflectSpread);
    middle.setStops(stops);
    painter.fillRect(QRectF(leftEnd.x(), y - reach, rightEnd.x() - leftEnd.x(), 2 * reach), middle);
    QRadialGradient end(leftEnd, reach);
    end.setStops(stops);
    painter.fillRect(QRectF(leftEnd.x() - reach, y - reach, reach, 2 * reach), end);
    end.setCenter(rightEnd);
    end.setFocalPoint(rightEnd);
    painter.fillRect(QRectF(rightEnd.x(), y - reach, reach, 2 * reach), end);
}

// The full pill stands so near to the edge that its shadow would end in a straight line there.
void fadeOutAtTheRight(QPainter& painter, const QSizeF& view) {
    constexpr double width = 9;
    const double begin = view.width() - width;
    QLinearGradient fade(begin, 0, view.width(), 0);
    fade.setStops({{0, Qt::black}, {1, Qt::transparent}});
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.fillRect(QRectF(begin, 0, width, view.height()), fade);
}

}  // namespace

void paintPillShadow(QPainter& painter, const QRectF& capsule, double blur, const QColor& colour,
                     const QSizeF& view) {
    const double scale = painter.device()->devicePixelRatioF();
    QImage layer((scale * view).toSize(), QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(scale);
    layer.fill(Qt::transparent);
    QPainter onLayer(&layer);
    paintWhole(onLayer, capsule, blur / 2, colour);
    fadeOutAtTheRight(onLayer, view);
    onLayer.end();
    painter.drawImage(0, 0, layer);
}

}  // namespace sayloft
