// SPDX-License-Identifier: MIT
#include "ui/FocusDropView.h"

#include <QMouseEvent>

namespace sayloft {

void FocusDropView::mousePressEvent(QMouseEvent* event) {
    if (QWidget* focused = window()->focusWidget())
        focused->clearFocus();
    QWidget::mousePressEvent(event);
}

}  // namespace sayloft
