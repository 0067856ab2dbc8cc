// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

#include <vector>

class QVBoxLayout;

namespace sayloft {

/// Rows one below another without a frame. It is as high as they are; where there is no room for
/// that, they scroll.
class ScrolledRows : public QScrollArea {
public:
    explicit ScrolledRows(int spacing);

    [[nodiscard]] int count() const;
    [[nodiscard]] QWidget* row(int index) const;
    void append(const std::vector<QWidget*>& rows);
    /// The row goes out of sight at once and is deleted once its own events are over.
    void remove(QWidget* row);

    void scrollTo(QWidget* row);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fitRows();

    QVBoxLayout* m_rows;
};

}  // namespace sayloft
