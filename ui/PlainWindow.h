// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

class QWidget;

namespace sayloft {

/// Makes of `window` one with a title and a close button only, which the user cannot resize. It is
/// as large as `size`, or larger where the content needs that.
void makePlainWindow(QWidget& window, QWidget* content, QSize size);

/// Lets the desktop's key for that close the window.
void closeByKey(QWidget& window);

/// Shows the window where it is not, and gives it the keyboard.
void bringToFront(QWidget& window);

}  // namespace sayloft
