// SPDX-License-Identifier: MIT
#include "ui/TextLabel.h"

#include "ui/SystemFont.h"

#include <QApplication>
#include <QEvent>

#include <algorithm>

namespace sayloft {

TextLabel::TextLabel(const QString& text, const LabelStyle& style) : QLabel(text), m_style(style) {
    setTextFormat(Qt::PlainText);
    setWordWrap(style.wraps);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    restyle();
}

void TextLabel::setRole(TextRole role) {
    m_style.role = role;
    restyle();
}

QSize TextLabel::sizeHint() const {
    const int width = widthForFont(m_style.width);
    if (m_style.wraps)
        return {width, heightForWidth(width)};
    return QLabel::sizeHint().expandedTo({width, 0});
}

void TextLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        restyle();
}

bool TextLabel::event(QEvent* event) {
    const bool handled = QLabel::event(event);
    if (event->type() == QEvent::ApplicationFontChange ||
        event->type() == QEvent::ApplicationPaletteChange)
        restyle();
    return handled;
}

// Changes nothing where nothing is new: each change comes back here as an event.
void TextLabel::restyle() {
    const QFont font = systemFont(m_style.points, m_style.weight);
    if (font != this->font())
        setFont(font);
    const QPalette around =
        parentWidget() != nullptr ? parentWidget()->palette() : QApplication::palette();
    const QColor colour = textColour(m_style.role, around);
    if (palette().color(QPalette::WindowText) == colour)
        return;
    QPalette own = palette();
    own.setColor(QPalette::WindowText, colour);
    setPalette(own);
}

}  // namespace sayloft
