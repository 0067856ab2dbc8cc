// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

class QWidget;

namespace sayloft {

/// Makes of `window` one with a title and a close button only, which goes with the desktop's font
/// and colours and closes with the desktop's key for that.
void makePlainWindow(QWidget& window);

/// Fills `window`, which the user cannot resize then: it is as large as `size`, or larger where the
/// content needs that.
void fillWindow(QWidget& window, QWidget* content, QSize size);

/// Shows the window where it is not, and gives it the keyboard.
void bringToFront(QWidget& window);

}  // namespace sayloft
