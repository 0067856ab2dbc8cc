// SPDX-License-Identifier: MIT
#include "ui/SteadyLabel.h"

#include <algorithm>
#include <utility>

namespace sayloft {

SteadyLabel::SteadyLabel(QStringList texts) : m_texts(std::move(texts)) {
    setTextFormat(Qt::PlainText);
}

QSize SteadyLabel::sizeHint() const {
    QSize size = QLabel::sizeHint();
    // A label may ask for a pixel more than its text is wide.
    for (const QString& text : m_texts)
        size.setWidth(std::max(size.width(), fontMetrics().horizontalAdvance(text) + 2));
    return size;
}

}  // namespace sayloft
