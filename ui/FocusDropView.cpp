// SPDX-License-Identifier: MIT
#include "ui/FocusDropView.h"

#include <QMouseEvent>

namespace sayloft {

void FocusDropView::mousePressEvent(QMouseEvent* event) {
    QWidget* const focused = window()->focusWidget();
    if (event->button() == Qt::LeftButton && focused)
        focused->clearFocus();
    QWidget::mousePressEvent(event);
}

}  // namespace sayloft
