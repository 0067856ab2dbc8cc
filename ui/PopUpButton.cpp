// SPDX-License-Identifier: MIT
#include "ui/PopUpButton.h"

#include "ui/TextLook.h"

#include <QWheelEvent>

#include <algorithm>

namespace sayloft {

constexpr int widest = 400;

PopUpButton::PopUpButton() {
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    setMinimumContentsLength(12);
    connect(this, &QComboBox::currentTextChanged, this, &QWidget::setToolTip);
}

QSize PopUpButton::sizeHint() const {
    const QSize wanted = QComboBox::sizeHint();
    return {std::min(wanted.width(), widthForFont(widest)), wanted.height()};
}

void PopUpButton::wheelEvent(QWheelEvent* event) {
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

}  // namespace sayloft
