// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>

// The structures of the interface org.kde.StatusNotifierItem, with their D-Bus signatures.
namespace sayloft::statusnotifier {

/// (iiay): ARGB with 8 bits each, not premultiplied, in network byte order
struct Pixmap {
    int width = 0;
    int height = 0;
    QByteArray pixels;

    [[nodiscard]] static Pixmap from(const QImage& image);
    bool operator==(const Pixmap&) const = default;
};

/// (sa(iiay)ss)
struct ToolTip {
    QString iconName;
    QList<Pixmap> iconPixmap;
    QString title;
    QString text;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Pixmap& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, Pixmap& value);
QDBusArgument& operator<<(QDBusArgument& argument, const ToolTip& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, ToolTip& value);

/// To be called before any of them is sent.
void registerTypes();

}  // namespace sayloft::statusnotifier

Q_DECLARE_METATYPE(sayloft::statusnotifier::Pixmap)
Q_DECLARE_METATYPE(sayloft::statusnotifier::ToolTip)
