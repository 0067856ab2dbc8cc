// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QMetaType>
#include <QStringList>
#include <QVariantMap>

// The structures of the interface com.canonical.dbusmenu, with their D-Bus signatures.
namespace sayloft::dbusmenu {

/// (ia{sv})
struct Properties {
    int id = 0;
    QVariantMap properties;
};

/// (ias)
struct RemovedProperties {
    int id = 0;
    QStringList properties;
};

/// (ia{sv}av), where each child is one of these in a variant
struct Layout {
    int id = 0;
    QVariantMap properties;
    QList<Layout> children;
};

/// (isvu)
struct Event {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;
};

/// aas: the keys of each stroke, such as "Control" and "q"
using Shortcut = QList<QStringList>;

QDBusArgument& operator<<(QDBusArgument& argument, const Properties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, Properties& value);
QDBusArgument& operator<<(QDBusArgument& argument, const RemovedProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, RemovedProperties& value);
QDBusArgument& operator<<(QDBusArgument& argument, const Layout& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, Layout& value);
QDBusArgument& operator<<(QDBusArgument& argument, const Event& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, Event& value);

/// To be called before any of them is sent.
void registerTypes();

}  // namespace sayloft::dbusmenu

Q_DECLARE_METATYPE(sayloft::dbusmenu::Properties)
Q_DECLARE_METATYPE(sayloft::dbusmenu::RemovedProperties)
Q_DECLARE_METATYPE(sayloft::dbusmenu::Layout)
Q_DECLARE_METATYPE(sayloft::dbusmenu::Event)
