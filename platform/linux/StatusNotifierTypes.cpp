// SPDX-License-Identifier: MIT
#include "platform/linux/StatusNotifierTypes.h"

#include <QDBusMetaType>
#include <QtEndian>

namespace sayloft::statusnotifier {

Pixmap Pixmap::from(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    Pixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.pixels.reserve(argb.sizeInBytes());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const quint32*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            const quint32 pixel = qToBigEndian(line[x]);
            pixmap.pixels.append(reinterpret_cast<const char*>(&pixel), sizeof pixel);
        }
    }
    return pixmap;
}

QDBusArgument& operator<<(QDBusArgument& argument, const Pixmap& value) {
    argument.beginStructure();
    argument << value.width << value.height << value.pixels;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Pixmap& value) {
    argument.beginStructure();
    argument >> value.width >> value.height >> value.pixels;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const ToolTip& value) {
    argument.beginStructure();
    argument << value.iconName << value.iconPixmap << value.title << value.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ToolTip& value) {
    argument.beginStructure();
    argument >> value.iconName >> value.iconPixmap >> value.title >> value.text;
    argument.endStructure();
    return argument;
}

void registerTypes() {
    qDBusRegisterMetaType<Pixmap>();
    qDBusRegisterMetaType<QList<Pixmap>>();
    qDBusRegisterMetaType<ToolTip>();
}

}  // namespace sayloft::statusnotifier
