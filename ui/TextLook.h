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

/// A width that suits an ordinary font; more where the desktop's font is larger than that, so that
/// as much text fits.
[[nodiscard]] int widthForFont(int width);

/// From now on the looks in `window` go with the desktop when it has another font or other colours.
void followDesktop(QWidget& window);

/// Gives a widget a look, and belongs to it. Where the widget is in a window, see followDesktop.
class TextLook : public QObject {
    Q_OBJECT

public:
    TextLook(QWidget* widget, const TextStyle& style);

    void setRole(TextRole role);

    void applyFont();
    void applyColour();

private:
    QWidget* m_widget;
    TextStyle m_style;
};

}  // namespace sayloft
