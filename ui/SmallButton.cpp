// SPDX-License-Identifier: MIT
#include "ui/SmallButton.h"

#include "ui/TextLook.h"

#include <algorithm>

namespace sayloft {

SmallButton::SmallButton(const QString& title) : QPushButton(title) {
    new TextLook(this, {.size = 11});
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAutoDefault(false);
}

QSize SmallButton::sizeHint() const {
    const QSize usual = QPushButton::sizeHint();
    const int tight = fontMetrics().horizontalAdvance(text()) + usual.height();
    return {std::min(usual.width(), tight), usual.height()};
}

}  // namespace sayloft
