// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace sayloft {

/// One line of plain text that ends in "…" where there is not enough room for it, and then says the
/// whole of it in a tooltip.
class ElidingLabel : public QLabel {
public:
    explicit ElidingLabel(const QString& text);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QString elided() const;
};

}  // namespace sayloft
