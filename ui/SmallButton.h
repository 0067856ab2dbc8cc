// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace sayloft {

/// A push button in small type that is no wider than its title needs.
class SmallButton : public QPushButton {
public:
    explicit SmallButton(const QString& title);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }
};

}  // namespace sayloft
