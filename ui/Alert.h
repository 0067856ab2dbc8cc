// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace sayloft {

struct AlertTexts {
    QString message;
    QString informative;
    QString button;  ///< does it; the other button is "Cancel"
};

/// Asks over the window before something is done. Returns at once; `confirmed` is called when the
/// user says yes, unless the window is gone by then.
void ask(QWidget* window, const AlertTexts& texts, std::function<void()> confirmed);

}  // namespace sayloft
