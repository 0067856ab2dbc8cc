// SPDX-License-Identifier: MIT
#include "platform/linux/DBusMenuTypes.h"

#include <QDBusMetaType>

namespace sayloft::dbusmenu {

QDBusArgument& operator<<(QDBusArgument& argument, const Properties& value) {
    argument.beginStructure();
    argument << value.id << value.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Properties& value) {
    argument.beginStructure();
    argument >> value.id >> value.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const RemovedProperties& value) {
    argument.beginStructure();
    argument << value.id << value.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, RemovedProperties& value) {
    argument.beginStructure();
    argument >> value.id >> value.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const Layout& value) {
    argument.beginStructure();
    argument << value.id << value.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const Layout& child : value.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Layout& value) {
    argument.beginStructure();
    argument >> value.id >> value.properties;
    value.children.clear();
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        value.children.append(qdbus_cast<Layout>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const Event& value) {
    argument.beginStructure();
    argument << value.id << value.name << value.data << value.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Event& value) {
    argument.beginStructure();
    argument >> value.id >> value.name >> value.data >> value.timestamp;
    argument.endStructure();
    return argument;
}

void registerTypes() {
    qDBusRegisterMetaType<Properties>();
    qDBusRegisterMetaType<QList<Properties>>();
    qDBusRegisterMetaType<RemovedProperties>();
    qDBusRegisterMetaType<QList<RemovedProperties>>();
    qDBusRegisterMetaType<Layout>();
    qDBusRegisterMetaType<Event>();
    qDBusRegisterMetaType<QList<Event>>();
    qDBusRegisterMetaType<Shortcut>();
}

}  // namespace sayloft::dbusmenu
