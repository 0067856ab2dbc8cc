// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QWidget;

namespace sayloft::test {

/// What a user cannot read to its end, or not reach: the controls and labels in sight that have
/// less room than they need or reach out of the window, and the texts that are wider or higher than
/// their place.
[[nodiscard]] QStringList cutControls(const QWidget& window);

}  // namespace sayloft::test
