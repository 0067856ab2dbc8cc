// SPDX-License-Identifier: MIT
#include "platform/linux/StatusNotifierItem.h"

#include <utility>

namespace sayloft {

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
