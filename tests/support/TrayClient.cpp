// SPDX-License-Identifier: MIT
#include "tests/support/TrayClient.h"

#include "tests/support/ChildProgram.h"
#include "tests/support/WaitUntil.h"

#include <QRegularExpression>

#include <chrono>
#include <stdexcept>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/MenuBar");
const QString getProperty = QStringLiteral("org.freedesktop.DBus.Properties.Get");

}  // namespace

TrayClient::TrayClient(const SessionBus& bus) {
    bus.addTo(m_environment);
    m_environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
}

QString TrayClient::call(const QString& destination, const QString& object, const QString& method,
                         const QStringList& arguments) const {
    const QStringList all = QStringList{QStringLiteral("call"), QStringLiteral("--session"),
                                        QStringLiteral("-d"),   destination,
                                        QStringLiteral("-o"),   object,
                                        QStringLiteral("-m"),   method,
                                        QStringLiteral("--")} +
                            arguments;
    return QString::fromUtf8(run(QStringLiteral("gdbus"), all, {}, m_environment)).trimmed();
}

QString TrayClient::watcherProperty(const QString& name) const {
    try {
        return call(watcher, QStringLiteral("/StatusNotifierWatcher"), getProperty,
                    {watcher, name});
    } catch (const std::runtime_error&) {
        return {};  // no watcher
    }
}

bool TrayClient::isTrayThere() const {
    return watcherProperty(QStringLiteral("IsStatusNotifierHostRegistered")) ==
           QStringLiteral("(<true>,)");
}

QStringList TrayClient::registeredItems() const {
    static const QRegularExpression quoted(QStringLiteral("'([^']*)'"));
    QStringList items;
    const QString list = watcherProperty(QStringLiteral("RegisteredStatusNotifierItems"));
    for (const QRegularExpressionMatch& match : quoted.globalMatch(list))
        items.append(match.captured(1));
    return items;
}

QString TrayClient::sayloft() const {
    QString owner;
    const auto found = [&] {
        try {
            owner = call(QStringLiteral("org.freedesktop.DBus"),
                         QStringLiteral("/org/freedesktop/DBus"),
                         QStringLiteral("org.freedesktop.DBus.GetNameOwner"),
                         {QStringLiteral("org.sayloft.Sayloft")});
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    };
    if (!waitUntil(found))
        throw std::runtime_error("Sayloft is not on the bus");
    return owner.section(QLatin1Char('\''), 1, 1);
}

bool TrayClient::isSayloftShown() const {
    return registeredItems().contains(sayloft() + itemPath);
}

QString TrayClient::property(const QString& name) const {
    const QString value = call(sayloft(), itemPath, getProperty,
                               {QStringLiteral("org.kde.StatusNotifierItem"), name});
    // (<value>,)
    return value.mid(2).chopped(3);
}

TrayItemProperties TrayClient::properties() const {
    return TrayItemProperties::fromGdbus(
        call(sayloft(), itemPath, QStringLiteral("org.freedesktop.DBus.Properties.GetAll"),
             {QStringLiteral("org.kde.StatusNotifierItem")}));
}

bool TrayClient::tooltipSays(const QString& words) const {
    const auto says = [&] {
        try {
            return property(QStringLiteral("ToolTip")).contains(words);
        } catch (const std::runtime_error&) {
            return false;  // the name comes before the item
        }
    };
    return waitUntil(says, 20s);
}

bool TrayClient::tooltipStopsSaying(const QString& words) const {
    return waitUntil([&] { return !property(QStringLiteral("ToolTip")).contains(words); }, 20s);
}

QString TrayClient::callMenu(const char* method, const QStringList& arguments) const {
    return call(sayloft(), menuPath,
                QStringLiteral("com.canonical.dbusmenu.") + QString::fromLatin1(method), arguments);
}

QString TrayClient::menu() const {
    return callMenu("GetLayout", {QStringLiteral("0"), QStringLiteral("-1"), QStringLiteral("[]")});
}

std::optional<int> TrayClient::idOf(const QString& label) const {
    const QRegularExpression line(QStringLiteral("<\\((\\d+), \\{[^}]*'label': <'") +
                                  QRegularExpression::escape(label) + QStringLiteral("'>"));
    const QRegularExpressionMatch match = line.match(menu());
    return match.hasMatch() ? std::optional(match.captured(1).toInt()) : std::nullopt;
}

QStringList TrayClient::labels() const {
    static const QRegularExpression label(QStringLiteral("'label': <'([^']*)'>"));
    QStringList labels;
    for (const QRegularExpressionMatch& match : label.globalMatch(menu()))
        labels.append(match.captured(1));
    return labels;
}

void TrayClient::click(int id) const {
    static_cast<void>(callMenu("Event", {QString::number(id), QStringLiteral("clicked"),
                                         QStringLiteral("<''>"), QStringLiteral("0")}));
}

void TrayClient::click(const QString& label) const {
    const std::optional<int> id = idOf(label);
    if (!id)
        throw std::runtime_error("the menu has no line " + label.toStdString());
    click(*id);
}

}  // namespace sayloft::test
