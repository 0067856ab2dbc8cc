// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Menu.h"
#include "platform/linux/DBusMenuTypes.h"

#include <QDBusContext>
#include <QDBusVariant>
#include <QObject>

#include <vector>

namespace sayloft {

/// Exports a menu over D-Bus, so that panels show it with their own looks. Main thread.
///
/// Every menu has ids of its own: what is clicked in one that was replaced meanwhile does nothing.
class DBusMenuServer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString TextDirection READ textDirection SCRIPTABLE true)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath CONSTANT SCRIPTABLE true)

public:
    DBusMenuServer();

    void setMenu(Menu menu);

    [[nodiscard]] uint version() const { return 3; }
    [[nodiscard]] QString status() const { return QStringLiteral("normal"); }
    [[nodiscard]] QString textDirection() const;
    [[nodiscard]] QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                sayloft::dbusmenu::Layout& layout);
    Q_SCRIPTABLE QList<sayloft::dbusmenu::Properties> GetGroupProperties(
        const QList<int>& ids, const QStringList& propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString& name);
    Q_SCRIPTABLE void Event(int id, const QString& eventId, const QDBusVariant& data,
                            uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<sayloft::dbusmenu::Event>& events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors);

Q_SIGNALS:
    Q_SCRIPTABLE void ItemsPropertiesUpdated(
        const QList<sayloft::dbusmenu::Properties>& updated,
        const QList<sayloft::dbusmenu::RemovedProperties>& removed);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parent);
    Q_SCRIPTABLE void ItemActivationRequested(int id, uint timestamp);

private:
    struct Node {
        int id = 0;
        MenuItem item;
        std::vector<Node> children;
    };

    [[nodiscard]] std::vector<Node> number(Menu items);
    [[nodiscard]] const Node* find(int id) const;
    [[nodiscard]] static const Node* find(const Node& node, int id);
    [[nodiscard]] static QVariantMap properties(const Node& node, const QStringList& names);
    [[nodiscard]] static dbusmenu::Layout layoutOf(const Node& node, int depth,
                                                   const QStringList& names);
    static void appendAll(const Node& node, const QStringList& names,
                          QList<dbusmenu::Properties>& answer);
    void choose(const Node& node);
    void refuse(int id, const QString& property = {});

    Node m_root;
    int m_lastId = 0;
    uint m_revision = 0;
};

}  // namespace sayloft
