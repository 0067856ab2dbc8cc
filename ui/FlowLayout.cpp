// SPDX-License-Identifier: MIT
#include "ui/FlowLayout.h"

#include <QStyle>
#include <QWidget>
#include <QWidgetItem>

#include <algorithm>
#include <numeric>

namespace sayloft {

FlowLayout::FlowLayout(int spacing) {
    setContentsMargins(0, 0, 0, 0);
    setSpacing(spacing);
}

FlowLayout::~FlowLayout() = default;

void FlowLayout::insertWidget(int index, QWidget* widget) {
    addChildWidget(widget);
    m_items.insert(m_items.begin() + index, std::make_unique<QWidgetItem>(widget));
    invalidate();
}

void FlowLayout::addItem(QLayoutItem* item) {
    m_items.emplace_back(item);
    invalidate();
}

int FlowLayout::count() const {
    return static_cast<int>(m_items.size());
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem* const item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    invalidate();
    return item;
}

int FlowLayout::heightForWidth(int width) const {
    const std::vector<Line> all = lines(width);
    if (all.empty())
        return 0;
    const int spaces = spacing() * static_cast<int>(all.size() - 1);
    return std::accumulate(all.begin(), all.end(), spaces,
                           [](int height, const Line& line) { return height + line.height; });
}

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const auto& item : m_items)
        size = size.expandedTo(item->minimumSize());
    return size;
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    QPoint topLeft = rect.topLeft();
    for (const Line& line : lines(rect.width())) {
        place(line, topLeft);
        topLeft.ry() += line.height + spacing();
    }
}

std::vector<FlowLayout::Line> FlowLayout::lines(int width) const {
    std::vector<Line> all;
    int x = 0;
    for (const auto& item : m_items) {
        if (item->isEmpty())
            continue;
        const QSize size = item->sizeHint();
        if (all.empty() || x + size.width() > width) {
            all.emplace_back();
            x = 0;
        }
        all.back().items.push_back(item.get());
        all.back().height = std::max(all.back().height, size.height());
        x += size.width() + spacing();
    }
    return all;
}

void FlowLayout::place(const Line& line, QPoint topLeft) const {
    const QWidget* const parent = parentWidget();
    const Qt::LayoutDirection direction = parent ? parent->layoutDirection() : Qt::LeftToRight;
    for (QLayoutItem* const item : line.items) {
        const QSize size = item->sizeHint();
        const QRect place(topLeft + QPoint(0, (line.height - size.height()) / 2), size);
        item->setGeometry(QStyle::visualRect(direction, geometry(), place));
        topLeft.rx() += size.width() + spacing();
    }
}

}  // namespace sayloft
