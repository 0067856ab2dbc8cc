// SPDX-License-Identifier: MIT
#pragma once

#include "ui/TextLook.h"

#include <QLabel>

namespace sayloft {

struct LabelStyle {
    TextStyle look{};
    int width = 0;       ///< where the text fits; 0: as wide as the text
    bool wraps = false;  ///< at `width`, which must be given then
};

/// A plain text with a look of its own.
class TextLabel : public QLabel {
public:
    TextLabel(const QString& text, const LabelStyle& style);

    void setRole(TextRole role) { m_look->setRole(role); }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    int m_width;
    TextLook* m_look;
};

}  // namespace sayloft
