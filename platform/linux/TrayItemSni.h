// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TrayItem.h"
#include "platform/linux/DBusMenuServer.h"
#include "platform/linux/StatusNotifierItem.h"

#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>

#include <map>
#include <memory>
#include <utility>

class QMenu;

namespace sayloft {

class SessionBusConnection;

/// The item in a tray that speaks StatusNotifierItem over D-Bus, as most desktops' panels do. Our
/// own, since the toolkit's decides once whether there is a tray, cannot say the state in its title
/// and has no symbol that a panel colours.
class TrayItemSni : public QObject, public TrayItem {
    Q_OBJECT

public:
    /// `iconFolder` holds "<name>-symbolic" of the pictures that a panel may colour. The connection
    /// outlives this.
    TrayItemSni(SessionBusConnection& connection, QString iconFolder);
    ~TrayItemSni() override;
    TrayItemSni(const TrayItemSni&) = delete;
    TrayItemSni& operator=(const TrayItemSni&) = delete;

    void setLook(const TrayLook& look) override;
    void setMenu(Menu menu) override;
    [[nodiscard]] bool isShown() const override { return m_isRegistered && m_isHostThere; }

private Q_SLOTS:
    void askForHost();

private:
    void enterBus();
    void watchTrays();
    void exportObjects();
    void registerItem();
    void setState(bool isRegistered, bool isHostThere);
    [[nodiscard]] StatusNotifierItem::Icon iconOf(const TrayLook& look) const;
    [[nodiscard]] QString themedName(const TrayLook& look) const;
    void popUp();

    SessionBusConnection& m_connection;
    const QString m_iconFolder;
    Menu m_menu;
    DBusMenuServer m_menuServer;
    StatusNotifierItem m_item;
    QDBusServiceWatcher m_watcher;
    std::unique_ptr<QMenu> m_popUp;
    /// By name and tint: states change while somebody waits to speak.
    std::map<std::pair<QString, TrayTint>, StatusNotifierItem::Icon> m_icons;
    bool m_isRegistered = false;
    bool m_isHostThere = false;
};

}  // namespace sayloft
