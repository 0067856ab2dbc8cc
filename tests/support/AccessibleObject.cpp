// SPDX-License-Identifier: MIT
#include "tests/support/AccessibleObject.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <stdexcept>
#include <string>
#include <utility>

namespace sayloft::test {
namespace {

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* action = "org.a11y.atspi.Action";
constexpr const char* component = "org.a11y.atspi.Component";
constexpr const char* text_ = "org.a11y.atspi.Text";
constexpr const char* editableText = "org.a11y.atspi.EditableText";
constexpr const char* value_ = "org.a11y.atspi.Value";
constexpr const char* properties = "org.freedesktop.DBus.Properties";

// As AT-SPI numbers them.
constexpr uint screenCoordinates = 0;
constexpr uint labelledBy = 2;

}  // namespace

AccessibleObject::AccessibleObject(const QDBusConnection& bus, QString program, QString path)
    : m_bus(bus), m_program(std::move(program)), m_path(std::move(path)) {}

QString AccessibleObject::name() const {
    return property(accessible, "Name").toString();
}

QString AccessibleObject::description() const {
    return property(accessible, "Description").toString();
}

QString AccessibleObject::role() const {
    return call(accessible, "GetRoleName").value(0).toString();
}

bool AccessibleObject::is(State state) const {
    const auto bits =
        qdbus_cast<QList<uint>>(call(accessible, "GetState").value(0).value<QDBusArgument>());
    const auto bit = static_cast<uint>(state);
    return bits.size() == 2 && ((bits[static_cast<int>(bit / 32)] >> (bit % 32)) & 1U) != 0;
}

QStringList AccessibleObject::labels() const {
    QStringList names;
    const auto relations = call(accessible, "GetRelationSet").value(0).value<QDBusArgument>();
    relations.beginArray();
    while (!relations.atEnd()) {
        uint kind = 0;
        relations.beginStructure();
        relations >> kind;
        for (const AccessibleObject& other : read(relations)) {
            if (kind == labelledBy)
                names.append(other.name());
        }
        relations.endStructure();
    }
    relations.endArray();
    return names;
}

std::vector<AccessibleObject> AccessibleObject::children() const {
    return read(call(accessible, "GetChildren").value(0).value<QDBusArgument>());
}

std::vector<AccessibleObject> AccessibleObject::read(const QDBusArgument& list) const {
    std::vector<AccessibleObject> objects;
    list.beginArray();
    while (!list.atEnd()) {
        QString program;
        QDBusObjectPath path;
        list.beginStructure();
        list >> program >> path;
        list.endStructure();
        objects.emplace_back(m_bus, program, path.path());
    }
    list.endArray();
    return objects;
}

QRect AccessibleObject::place() const {
    const auto extents =
        call(component, "GetExtents", {screenCoordinates}).value(0).value<QDBusArgument>();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

QStringList AccessibleObject::actions() const {
    QStringList names;
    const int count = property(action, "NActions").toInt();
    for (int i = 0; i < count; ++i)
        names.append(call(action, "GetName", {i}).value(0).toString());
    return names;
}

void AccessibleObject::act(const QString& name) const {
    const auto index = static_cast<int>(actions().indexOf(name));
    if (index < 0 || !call(action, "DoAction", {index}).value(0).toBool())
        throw std::runtime_error(this->name().toStdString() + " does not " + name.toStdString());
}

QString AccessibleObject::text() const {
    return call(text_, "GetText", {0, -1}).value(0).toString();
}

void AccessibleObject::setText(const QString& text) const {
    if (!call(editableText, "SetTextContents", {text}).value(0).toBool())
        throw std::runtime_error(name().toStdString() + " takes no text");
}

double AccessibleObject::value() const {
    return property(value_, "CurrentValue").toDouble();
}

void AccessibleObject::setValue(double value) const {
    call(properties, "Set",
         {QLatin1String(value_), QStringLiteral("CurrentValue"),
          QVariant::fromValue(QDBusVariant(value))});
}

void AccessibleObject::grabFocus() const {
    if (!call(component, "GrabFocus").value(0).toBool())
        throw std::runtime_error(name().toStdString() + " does not take the focus");
}

std::optional<AccessibleObject> AccessibleObject::find(const Test& test) const {
    for (const AccessibleObject& child : children()) {
        if (!child.is(State::showing))
            continue;
        if (test(child))
            return child;
        if (auto found = child.find(test))
            return found;
    }
    return std::nullopt;
}

QVariantList AccessibleObject::call(const char* interface, const char* method,
                                    const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(
        m_program, m_path, QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    const QDBusMessage reply = m_bus.call(message);
    if (reply.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error(std::string(method) + ": " + reply.errorMessage().toStdString());
    return reply.arguments();
}

QVariant AccessibleObject::property(const char* interface, const char* name) const {
    const QVariantList reply =
        call(properties, "Get", {QLatin1String(interface), QLatin1String(name)});
    return reply.value(0).value<QDBusVariant>().variant();
}

}  // namespace sayloft::test
