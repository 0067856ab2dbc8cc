// SPDX-License-Identifier: MIT
#include "ui/RoomyButton.h"

namespace sayloft {

RoomyButton::RoomyButton(const QString& title) : QPushButton(title) {
    setAutoDefault(false);
}

QSize RoomyButton::sizeHint() const {
    const QSize usual = QPushButton::sizeHint();
    const int roomy = fontMetrics().horizontalAdvance(text()) + usual.height();
    return usual.expandedTo({roomy, 0});
}

}  // namespace sayloft
