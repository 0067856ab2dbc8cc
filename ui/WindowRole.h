// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace sayloft {

/// To assistive technology the widget is a window. Qt itself says so only of dialogs and main
/// windows; others are fillers, which screen readers pass over. Comes before everything else that
/// is done to the widget, since what it is said to be then stays. Main thread.
void giveWindowRole(QWidget& window);

}  // namespace sayloft
