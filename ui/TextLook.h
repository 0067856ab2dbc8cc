// SPDX-License-Identifier: MIT
#pragma once

#include "ui/StatusColours.h"

#include <QFont>
#include <QObject>

class QWidget;

namespace sayloft {

/// How a text looks, in relation to the desktop's own font and colours.
struct TextStyle {
    int size = 13;  ///< 13 is the size of the desktop's font, and others are in proportion
    QFont::Weight weight = QFont::Normal;
    TextRole role = TextRole::primary;
    enum class Digits { asTheyCome, equallyWide } digits = Digits::asTheyCome;
};

/// The desktop's font in another size: never below `size` pixels of 1/96 inch, unless the desktop's
/// own font is smaller than that.
[[nodiscard]] QFont fontFor(const TextStyle& style, const QFont& desktopFont);

/// Gives a widget a look, and again whenever the desktop changes its font or colours. Belongs to
/// the widget.
class TextLook : public QObject {
public:
    TextLook(QWidget* widget, const TextStyle& style);

    void setRole(TextRole role);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void applyFont();
    void applyColour();

    QWidget* m_widget;
    TextStyle m_style;
};

}  // namespace sayloft
