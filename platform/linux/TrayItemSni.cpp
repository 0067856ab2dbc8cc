// SPDX-License-Identifier: MIT
#include "platform/linux/TrayItemSni.h"

#include "platform/SessionBusConnection.h"
#include "platform/linux/TrayIconSizes.h"

#include <QCursor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QMenu>

#include <utility>

namespace sayloft {
namespace {

QString watcherName() {
    return QStringLiteral("org.kde.StatusNotifierWatcher");
}

QString watcherPath() {
    return QStringLiteral("/StatusNotifierWatcher");
}

QString itemPath() {
    return QStringLiteral("/StatusNotifierItem");
}

QString menuPath() {
    return QStringLiteral("/MenuBar");
}

void fill(QMenu& menu, const Menu& items) {
    for (const MenuItem& item : items) {
        if (item.isSeparator) {
            menu.addSeparator();
            continue;
        }
        QString title = item.title;
        title.replace(QLatin1Char('&'), QStringLiteral("&&"));
        if (!item.submenu.empty()) {
            fill(*menu.addMenu(title), item.submenu);
            continue;
        }
        QAction* action = menu.addAction(title);
        action->setEnabled(item.isEnabled());
        if (item.action)
            QObject::connect(action, &QAction::triggered, &menu, item.action);
    }
}

}  // namespace

TrayItemSni::TrayItemSni(SessionBusConnection& connection, QString iconFolder)
    : m_connection(connection),
      m_iconFolder(std::move(iconFolder)),
      m_item(m_iconFolder, QDBusObjectPath(menuPath())) {
    m_item.onActivated = [this] { popUp(); };
    m_watcher.addWatchedService(watcherName());
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                setState(false, false);
                if (!newOwner.isEmpty())
                    registerItem();
            });
    connect(&m_connection, &SessionBusConnection::lost, this, [this] { setState(false, false); });
    connect(&m_connection, &SessionBusConnection::restored, this, [this] { enterBus(); });
    if (m_connection.bus())
        enterBus();
}

TrayItemSni::~TrayItemSni() = default;

void TrayItemSni::enterBus() {
    exportObjects();
    watchTrays();
    registerItem();
}

void TrayItemSni::exportObjects() {
    QDBusConnection bus = *m_connection.bus();
    bus.registerObject(menuPath(), &m_menuServer, QDBusConnection::ExportScriptableContents);
    bus.registerObject(itemPath(), &m_item, QDBusConnection::ExportScriptableContents);
}

void TrayItemSni::watchTrays() {
    QDBusConnection bus = *m_connection.bus();
    m_watcher.setConnection(bus);
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        // From any sender: naming one makes Qt ask the bus who that is, and wait for the answer.
        bus.connect(QString(), watcherPath(), watcherName(), QString::fromLatin1(signal), this,
                    SLOT(askForHost()));
}

void TrayItemSni::registerItem() {
    if (!m_connection.bus())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName(), watcherPath(), watcherName(), QStringLiteral("RegisterStatusNotifierItem"));
    // Nobody would start a tray that is not there.
    call.setAutoStartService(false);
    call << m_connection.bus()->baseService();
    auto* answer = new QDBusPendingCallWatcher(m_connection.bus()->asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (answer->isError())
            return;
        setState(true, m_isHostThere);
        askForHost();
    });
}

void TrayItemSni::askForHost() {
    if (!m_connection.bus())
        return;
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName(), watcherPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    call.setAutoStartService(false);
    call << watcherName() << QStringLiteral("IsStatusNotifierHostRegistered");
    auto* answer = new QDBusPendingCallWatcher(m_connection.bus()->asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        setState(m_isRegistered, reply.isValid() && reply.value().variant().toBool());
    });
}

void TrayItemSni::setState(bool isRegistered, bool isHostThere) {
    const bool wasShown = isShown();
    m_isRegistered = isRegistered;
    m_isHostThere = isHostThere;
    if (isShown() != wasShown && onShownChanged)
        onShownChanged();
}

void TrayItemSni::setLook(const TrayLook& look) {
    const auto [icon, isNew] = m_icons.try_emplace({look.image.name, look.tint});
    if (isNew)
        icon->second = iconOf(look);
    m_item.setIcon(icon->second);
    m_item.setTexts(look.title, look.reason);
}

StatusNotifierItem::Icon TrayItemSni::iconOf(const TrayLook& look) const {
    StatusNotifierItem::Icon icon{.name = themedName(look), .pixmaps = {}};
    for (const QImage& image : trayIconSizes(look))
        icon.pixmaps.append(statusnotifier::Pixmap::from(image));
    return icon;
}

QString TrayItemSni::themedName(const TrayLook& look) const {
    if (look.image.picture.isNull())
        return QStringLiteral("audio-input-microphone-symbolic");
    const QString name = look.image.name + QStringLiteral("-symbolic");
    const bool mayTakeThePanelsColour =
        look.image.isTemplate && look.tint == TrayTint::none &&
        QFile::exists(m_iconFolder + QLatin1Char('/') + name + QStringLiteral(".svg"));
    return mayTakeThePanelsColour ? name : QString();
}

void TrayItemSni::setMenu(Menu menu) {
    m_menu = menu;
    m_menuServer.setMenu(std::move(menu));
}

// For panels that do not show exported menus themselves.
void TrayItemSni::popUp() {
    m_popUp = std::make_unique<QMenu>();
    fill(*m_popUp, m_menu);
    m_popUp->popup(QCursor::pos());
}

}  // namespace sayloft
