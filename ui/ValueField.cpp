// SPDX-License-Identifier: MIT
#include "ui/ValueField.h"

#include <algorithm>

namespace sayloft {

ValueField::ValueField() {
    setAlignment(Qt::AlignRight);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QLineEdit::returnPressed, this, &ValueField::entered);
    connect(this, &QLineEdit::editingFinished, this, [this] {
        // Looking something up in another window is no end of typing.
        if (isActiveWindow())
            endEditing();
    });
}

void ValueField::showText(const QString& newText) {
    if (isEdited())
        return;
    if (text() != newText)
        setText(newText);
    settle();
}

void ValueField::settle() {
    setModified(false);
    m_shown = text();
}

void ValueField::endEditing() {
    if (isEdited())
        Q_EMIT editingEnded();
}

QSize ValueField::sizeHint() const {
    constexpr int width = 64;
    const int textWidth = fontMetrics().horizontalAdvance(QStringLiteral("0000 ms"));
    return {std::max(width, textWidth + fontMetrics().height() / 2),
            QLineEdit::sizeHint().height()};
}

}  // namespace sayloft
