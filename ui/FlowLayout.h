// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace sayloft {

/// Items beside each other, and in as many lines as they need; within a line they are centred
/// vertically.
class FlowLayout : public QLayout {
public:
    explicit FlowLayout(int spacing);
    ~FlowLayout() override;
    FlowLayout(const FlowLayout&) = delete;
    FlowLayout& operator=(const FlowLayout&) = delete;

    void insertWidget(int index, QWidget* widget);

    void addItem(QLayoutItem* item) override;
    [[nodiscard]] int count() const override;
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] QSize sizeHint() const override { return minimumSize(); }
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect& rect) override;

private:
    struct Line {
        std::vector<QLayoutItem*> items;
        int height = 0;
    };

    [[nodiscard]] std::vector<Line> lines(int width) const;
    void place(const Line& line, QPoint topLeft) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

}  // namespace sayloft
