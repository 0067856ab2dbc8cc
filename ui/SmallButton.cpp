// SPDX-License-Identifier: MIT
#include "ui/SmallButton.h"

#include "ui/TextLook.h"

namespace sayloft {

SmallButton::SmallButton(const QString& title) : QPushButton(title) {
    new TextLook(this, {.size = 11});
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAutoDefault(false);
}

QSize SmallButton::sizeHint() const {
    const int height = QPushButton::sizeHint().height();
    return {fontMetrics().horizontalAdvance(text()) + height, height};
}

}  // namespace sayloft
