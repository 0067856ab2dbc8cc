// SPDX-License-Identifier: MIT
#include "platform/linux/DBusMenuServer.h"

#include <QGuiApplication>

#include <utility>

namespace sayloft {
namespace {

using dbusmenu::Layout;
using dbusmenu::Properties;

/// A single underscore would underline the letter after it.
QString escaped(QString title) {
    return title.replace(QLatin1Char('_'), QStringLiteral("__"));
}

QString keyName(Qt::Key key) {
    return key == Qt::Key_Comma ? QStringLiteral("comma") : QKeySequence(key).toString().toLower();
}

dbusmenu::Shortcut shortcut(const QKeySequence& keys) {
    dbusmenu::Shortcut strokes;
    for (int i = 0; i < keys.count(); ++i) {
        QStringList stroke;
        const QKeyCombination combination = keys[static_cast<uint>(i)];
        if (combination.keyboardModifiers().testFlag(Qt::ControlModifier))
            stroke.append(QStringLiteral("Control"));
        stroke.append(keyName(combination.key()));
        strokes.append(stroke);
    }
    return strokes;
}

QVariantMap allProperties(const MenuItem& item) {
    if (item.isSeparator)
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    QVariantMap properties;
    if (!item.title.isEmpty())
        properties.insert(QStringLiteral("label"), escaped(item.title));
    if (!item.submenu.empty())
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    if (!item.isEnabled())
        properties.insert(QStringLiteral("enabled"), false);
    if (!item.keyEquivalent.isEmpty())
        properties.insert(QStringLiteral("shortcut"),
                          QVariant::fromValue(shortcut(item.keyEquivalent)));
    return properties;
}

}  // namespace

DBusMenuServer::DBusMenuServer() {
    dbusmenu::registerTypes();
}

void DBusMenuServer::setMenu(Menu menu) {
    m_root.item.submenu = menu;
    m_root.children = number(std::move(menu));
    Q_EMIT LayoutUpdated(++m_revision, m_root.id);
}

std::vector<DBusMenuServer::Node> DBusMenuServer::number(Menu items) {
    std::vector<Node> nodes;
    nodes.reserve(items.size());
    for (MenuItem& item : items) {
        const int id = ++m_lastId;
        std::vector<Node> children = number(item.submenu);
        nodes.push_back({id, std::move(item), std::move(children)});
    }
    return nodes;
}

const DBusMenuServer::Node* DBusMenuServer::find(int id) const {
    return find(m_root, id);
}

const DBusMenuServer::Node* DBusMenuServer::find(const Node& node, int id) {
    if (node.id == id)
        return &node;
    for (const Node& child : node.children) {
        if (const Node* found = find(child, id))
            return found;
    }
    return nullptr;
}

QVariantMap DBusMenuServer::properties(const Node& node, const QStringList& names) {
    QVariantMap properties = allProperties(node.item);
    if (!names.isEmpty())
        properties.removeIf(
            [&names](QVariantMap::iterator property) { return !names.contains(property.key()); });
    return properties;
}

Layout DBusMenuServer::layoutOf(const Node& node, int depth, const QStringList& names) {
    Layout layout{node.id, properties(node, names), {}};
    if (depth == 0)
        return layout;
    for (const Node& child : node.children)
        layout.children.append(layoutOf(child, depth - 1, names));
    return layout;
}

void DBusMenuServer::appendAll(const Node& node, const QStringList& names,
                               QList<Properties>& answer) {
    answer.append({node.id, properties(node, names)});
    for (const Node& child : node.children)
        appendAll(child, names, answer);
}

QString DBusMenuServer::textDirection() const {
    return QGuiApplication::isRightToLeft() ? QStringLiteral("rtl") : QStringLiteral("ltr");
}

uint DBusMenuServer::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                               Layout& layout) {
    if (const Node* node = find(parentId))
        layout = layoutOf(*node, recursionDepth, propertyNames);
    else
        refuse(parentId);
    return m_revision;
}

QList<Properties> DBusMenuServer::GetGroupProperties(const QList<int>& ids,
                                                     const QStringList& propertyNames) {
    QList<Properties> answer;
    // No ids: all of them.
    if (ids.isEmpty())
        appendAll(m_root, propertyNames, answer);
    for (const int id : ids) {
        if (const Node* node = find(id))
            answer.append({id, properties(*node, propertyNames)});
    }
    return answer;
}

QDBusVariant DBusMenuServer::GetProperty(int id, const QString& name) {
    const Node* node = find(id);
    const QVariant value = node != nullptr ? properties(*node, {}).value(name) : QVariant();
    if (!value.isValid()) {
        refuse(id, name);
        return QDBusVariant(QString());
    }
    return QDBusVariant(value);
}

void DBusMenuServer::Event(int id, const QString& eventId, const QDBusVariant& /*data*/,
                           uint /*timestamp*/) {
    const Node* node = find(id);
    if (node == nullptr)
        refuse(id);
    else if (eventId == QStringLiteral("clicked"))
        choose(*node);
}

QList<int> DBusMenuServer::EventGroup(const QList<dbusmenu::Event>& events) {
    QList<int> unknown;
    for (const dbusmenu::Event& event : events) {
        const Node* node = find(event.id);
        if (node == nullptr)
            unknown.append(event.id);
        else if (event.name == QStringLiteral("clicked"))
            choose(*node);
    }
    return unknown;
}

bool DBusMenuServer::AboutToShow(int id) {
    if (find(id) == nullptr)
        refuse(id);
    return false;
}

QList<int> DBusMenuServer::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    for (const int id : ids) {
        if (find(id) == nullptr)
            idErrors.append(id);
    }
    return {};
}

// The panel has its answer before whatever the action does, be it quitting.
void DBusMenuServer::choose(const Node& node) {
    if (node.item.action)
        QMetaObject::invokeMethod(this, node.item.action, Qt::QueuedConnection);
}

void DBusMenuServer::refuse(int id, const QString& property) {
    if (!calledFromDBus())
        return;
    const QString what = property.isEmpty() ? QStringLiteral("the menu has nothing with the id %1")
                                            : QStringLiteral("%1 has no property \"%2\"");
    sendErrorReply(QDBusError::InvalidArgs,
                   property.isEmpty() ? what.arg(id) : what.arg(id).arg(property));
}

}  // namespace sayloft
