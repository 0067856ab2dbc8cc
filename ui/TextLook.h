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

/// Gives a widget a look, and belongs to it.
class TextLook : public QObject {
    Q_OBJECT

public:
    TextLook(QWidget* widget, const TextStyle& style);

    void setRole(TextRole role);

    /// To be called for every event of a window: gives what is in it its looks again when the
    /// desktop has another font or other colours.
    static void followDesktop(const QWidget& window, const QEvent& event);

private:
    void applyFont();
    void applyColour();

    QWidget* m_widget;
    TextStyle m_style;
};

}  // namespace sayloft
