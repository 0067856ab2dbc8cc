// SPDX-License-Identifier: MIT
#include "platform/linux/StatusNotifierItem.h"

#include <QStringList>

#include <utility>

namespace sayloft {
namespace {

// WORKAROUND: of a tooltip, lxqt-panel 1.2 shows the title and not the text.
bool showsTitlesOnly() {
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP")
        .split(QLatin1Char(':'))
        .contains(QStringLiteral("LXQt"), Qt::CaseInsensitive);
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(QString iconThemePath, QDBusObjectPath menu)
    : m_iconThemePath(std::move(iconThemePath)), m_menu(std::move(menu)) {
    statusnotifier::registerTypes();
}

void StatusNotifierItem::setIcon(Icon icon) {
    if (icon == m_icon)
        return;
    m_icon = std::move(icon);
    Q_EMIT NewIcon();
}

void StatusNotifierItem::setTexts(const QString& title, const QString& reason) {
    if (title == m_title && reason == m_reason)
        return;
    m_title = title;
    m_reason = reason;
    Q_EMIT NewTitle();
    Q_EMIT NewToolTip();
}

// Some trays show no tooltips.
QString StatusNotifierItem::title() const {
    return m_reason.isEmpty() ? m_title : QStringLiteral("%1 (%2)").arg(m_title, m_reason);
}

statusnotifier::ToolTip StatusNotifierItem::toolTip() const {
    if (showsTitlesOnly())
        return {.iconName = {}, .iconPixmap = {}, .title = title(), .text = {}};
    return {.iconName = {}, .iconPixmap = {}, .title = m_title, .text = m_reason};
}

void StatusNotifierItem::Activate(int /*x*/, int /*y*/) {
    if (onActivated)
        onActivated();
}

void StatusNotifierItem::SecondaryActivate(int x, int y) {
    Activate(x, y);
}

void StatusNotifierItem::ContextMenu(int x, int y) {
    Activate(x, y);
}

void StatusNotifierItem::Scroll(int /*delta*/, const QString& /*orientation*/) {}

}  // namespace sayloft
