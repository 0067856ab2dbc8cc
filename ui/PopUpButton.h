// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

namespace sayloft {

/// A button with a list of choices. Its widest choice makes it no wider than its place, and the
/// wheel changes it only while it has the keyboard: whoever scrolls the window past it does not
/// mean it.
class PopUpButton : public QComboBox {
public:
    PopUpButton();

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace sayloft
