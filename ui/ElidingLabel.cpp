// SPDX-License-Identifier: MIT
#include "ui/ElidingLabel.h"

#include <QPainter>
#include <QStyle>

namespace sayloft {

ElidingLabel::ElidingLabel(const QString& text) : QLabel(text) {
    setTextFormat(Qt::PlainText);
}

QSize ElidingLabel::minimumSizeHint() const {
    constexpr int characters = 6;
    return {fontMetrics().averageCharWidth() * characters, QLabel::minimumSizeHint().height()};
}

void ElidingLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const auto visual = QStyle::visualAlignment(layoutDirection(), alignment());
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(visual), palette(),
                          isEnabled(), elided(), foregroundRole());
}

void ElidingLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    setToolTip(elided() == text() ? QString() : text());
}

QString ElidingLabel::elided() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

}  // namespace sayloft
