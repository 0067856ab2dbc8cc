// SPDX-License-Identifier: MIT
#pragma once

#include "ui/LabelColours.h"

#include <QFont>
#include <QLabel>

namespace sayloft {

struct TextStyle {
    double points = 13;
    QFont::Weight weight = QFont::Normal;
    LabelColour colour = nullptr;  ///< null: the ordinary one
    int width = 0;                 ///< where the text fits; 0: as wide as the text
    bool wraps = false;            ///< at `width`, which must be given then
};

/// A plain text in a size and a colour that go with the desktop's, also when those change.
class TextLabel : public QLabel {
public:
    TextLabel(const QString& text, const TextStyle& style);

    void setColour(LabelColour colour);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

private:
    void restyle();

    TextStyle m_style;
};

}  // namespace sayloft
