// SPDX-License-Identifier: MIT
#pragma once

#include "ui/StatusColours.h"

#include <QFont>
#include <QLabel>

namespace sayloft {

struct LabelStyle {
    double points = 13;
    QFont::Weight weight = QFont::Normal;
    TextRole role = TextRole::primary;
    int width = 0;       ///< where the text fits; 0: as wide as the text
    bool wraps = false;  ///< at `width`, which must be given then
};

/// A plain text in a size and a colour that go with the desktop's, also when those change.
class TextLabel : public QLabel {
public:
    TextLabel(const QString& text, const LabelStyle& style);

    void setRole(TextRole role);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void restyle();

    LabelStyle m_style;
};

}  // namespace sayloft
