// SPDX-License-Identifier: MIT
#include "ui/TextLabel.h"

namespace sayloft {

TextLabel::TextLabel(const QString& text, const LabelStyle& style)
    : QLabel(text), m_width(style.width), m_look(new TextLook(this, style.look)) {
    setTextFormat(Qt::PlainText);
    setWordWrap(style.wraps);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize TextLabel::sizeHint() const {
    const int width = widthForFont(m_width);
    if (wordWrap())
        return {width, heightForWidth(width)};
    return QLabel::sizeHint().expandedTo({width, 0});
}

}  // namespace sayloft
