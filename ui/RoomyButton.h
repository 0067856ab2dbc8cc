// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace sayloft {

/// A push button with room on both sides of its title, also in styles that leave none.
class RoomyButton : public QPushButton {
public:
    explicit RoomyButton(const QString& title = {});

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace sayloft
