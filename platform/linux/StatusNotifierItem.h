// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/StatusNotifierTypes.h"

#include <QDBusObjectPath>
#include <QObject>

#include <functional>

namespace sayloft {

/// What a tray reads of an item over D-Bus. Main thread.
class StatusNotifierItem : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString Id READ id CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString Title READ title SCRIPTABLE true)
    Q_PROPERTY(QString Status READ status CONSTANT SCRIPTABLE true)
    Q_PROPERTY(int WindowId READ windowId CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString IconName READ iconName SCRIPTABLE true)
    Q_PROPERTY(QString IconThemePath READ iconThemePath CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QList<sayloft::statusnotifier::Pixmap> IconPixmap READ iconPixmap SCRIPTABLE true)
    Q_PROPERTY(QString OverlayIconName READ none CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString AttentionIconName READ none CONSTANT SCRIPTABLE true)
    Q_PROPERTY(QString AttentionMovieName READ none CONSTANT SCRIPTABLE true)
    Q_PROPERTY(sayloft::statusnotifier::ToolTip ToolTip READ toolTip SCRIPTABLE true)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT SCRIPTABLE true)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT SCRIPTABLE true)

public:
    struct Icon {
        QString name;  ///< in the icon theme path or the desktop's theme; empty: the pixmaps
        QList<statusnotifier::Pixmap> pixmaps;

        bool operator==(const Icon&) const = default;
    };

    StatusNotifierItem(QString iconThemePath, QDBusObjectPath menu);

    void setIcon(Icon icon);
    void setTexts(const QString& title, const QString& reason);

    /// The item was clicked, and the tray leaves showing the menu to us.
    std::function<void()> onActivated;

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return QStringLiteral("sayloft"); }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconName() const { return m_icon.name; }
    [[nodiscard]] QString iconThemePath() const { return m_iconThemePath; }
    [[nodiscard]] QList<statusnotifier::Pixmap> iconPixmap() const { return m_icon.pixmaps; }
    [[nodiscard]] QString none() const { return {}; }
    [[nodiscard]] statusnotifier::ToolTip toolTip() const;
    [[nodiscard]] QDBusObjectPath menu() const { return m_menu; }
    [[nodiscard]] bool itemIsMenu() const { return true; }

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString& orientation);

Q_SIGNALS:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString& status);

private:
    const QString m_iconThemePath;
    const QDBusObjectPath m_menu;
    Icon m_icon;
    QString m_title;
    QString m_reason;
};

}  // namespace sayloft
