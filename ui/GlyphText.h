// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>
#include <QString>

namespace sayloft {

/// `text` where the fonts of this machine have all of it, else `plainer`: better than boxes.
[[nodiscard]] QString displayable(const QString& text, const QString& plainer, const QFont& font);
/// In the font of the desktop.
[[nodiscard]] QString displayable(const QString& text, const QString& plainer);

}  // namespace sayloft
