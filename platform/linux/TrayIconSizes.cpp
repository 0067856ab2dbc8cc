// SPDX-License-Identifier: MIT
#include "platform/linux/TrayIconSizes.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <array>
#include <cmath>

namespace sayloft {
namespace {

constexpr std::array heights{18, 22, 24, 32, 36, 48, 54, 72};

/// A panel does not tell its colours: without a tint the shape is readable on dark and on light.
QColor colour(TrayTint tint) {
    constexpr QColor readableOnAll(134, 134, 134);
    switch (tint) {
        case TrayTint::dimmed:
            return {readableOnAll.red(), readableOnAll.green(), readableOnAll.blue(), 140};
        case TrayTint::accent:
            return QGuiApplication::palette().color(QPalette::Highlight);
        case TrayTint::warning:
            return {255, 149, 0};
        case TrayTint::none:
            break;
    }
    return readableOnAll;
}

QImage scaled(const TrayImage& image, int height) {
    const auto width = static_cast<int>(
        std::lround(image.size.width() * height / std::max(image.size.height(), 1.0)));
    return image.picture
        .scaled(std::max(width, 1), height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage coloured(QImage shape, const QColor& colour) {
    QPainter painter(&shape);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shape.rect(), colour);
    return shape;
}

}  // namespace

std::vector<QImage> trayIconSizes(const TrayLook& look) {
    std::vector<QImage> icons;
    if (look.image.picture.isNull())
        return icons;
    icons.reserve(heights.size());
    for (const int height : heights) {
        const QImage icon = scaled(look.image, height);
        icons.push_back(look.image.isTemplate ? coloured(icon, colour(look.tint)) : icon);
    }
    return icons;
}

}  // namespace sayloft
