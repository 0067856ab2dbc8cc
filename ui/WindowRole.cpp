// SPDX-License-Identifier: MIT
#include "ui/WindowRole.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace sayloft {
namespace {

constexpr const char* mark = "sayloftWindow";

// None for everything that Qt itself knows better.
QAccessibleInterface* makeWindow(const QString& /*className*/, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    const bool isMarked = widget && widget->property(mark).toBool();
    return isMarked ? new QAccessibleWidget(widget, QAccessible::Window) : nullptr;
}

}  // namespace

void giveWindowRole(QWidget& window) {
    window.setProperty(mark, true);
    // Installed once, however often it is asked for.
    QAccessible::installFactory(makeWindow);
}

}  // namespace sayloft
