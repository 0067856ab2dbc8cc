// SPDX-License-Identifier: MIT
#include "ui/ScrolledRows.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace sayloft {

constexpr int rowsAlwaysSeen = 3;
constexpr int gapBeforeBar = 6;

ScrolledRows::ScrolledRows(int spacing) {
    auto* content = new QWidget;
    m_rows = new QVBoxLayout(content);
    m_rows->setContentsMargins(0, 0, gapBeforeBar, 0);
    m_rows->setSpacing(spacing);
    setWidget(content);
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    // The window's own colour, also in styles that paint lists in another.
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    fitRows();
}

int ScrolledRows::count() const {
    return m_rows->count();
}

QWidget* ScrolledRows::row(int index) const {
    return m_rows->itemAt(index)->widget();
}

void ScrolledRows::append(const std::vector<QWidget*>& rows) {
    for (QWidget* const row : rows) {
        m_rows->addWidget(row, 0, Qt::AlignLeading);
        row->show();
    }
    fitRows();
}

void ScrolledRows::remove(QWidget* row) {
    m_rows->removeWidget(row);
    row->hide();
    row->deleteLater();
    fitRows();
}

void ScrolledRows::scrollTo(QWidget* row) {
    // Until all is laid out anew, the bar does not reach as far as a new row.
    if (parentWidget() != nullptr && parentWidget()->layout() != nullptr)
        parentWidget()->layout()->activate();
    widget()->layout()->activate();
    QEvent layOut(QEvent::LayoutRequest);
    QCoreApplication::sendEvent(widget(), &layOut);
    ensureWidgetVisible(row, 0, 0);
}

QSize ScrolledRows::sizeHint() const {
    const QSize rows = widget()->sizeHint();
    if (count() == 0)
        return {0, 0};
    const int seen = std::min(rowsAlwaysSeen, count());
    const int height = seen * row(0)->sizeHint().height() + (seen - 1) * m_rows->spacing();
    return {rows.width() + verticalScrollBar()->sizeHint().width(), height};
}

bool ScrolledRows::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        fitRows();
    return QScrollArea::eventFilter(watched, event);
}

void ScrolledRows::fitRows() {
    setMaximumHeight(count() == 0 ? 0 : m_rows->sizeHint().height());
    updateGeometry();
}

}  // namespace sayloft
