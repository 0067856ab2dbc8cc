// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace sayloft {

/// The content of a window in which a click on empty space, with the button for clicking,
/// ends the editing of a text field, so that what was typed counts.
class FocusDropView : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void mousePressEvent(QMouseEvent* event) override;
};

}  // namespace sayloft
