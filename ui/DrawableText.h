// SPDX-License-Identifier: MIT
#pragma once

class QFont;
class QString;

namespace sayloft {

/// The text with a plain plus sign in place of the wide one where no font of the system has that,
/// so that a box would be drawn.
[[nodiscard]] QString drawableText(const QString& text, const QFont& font);

}  // namespace sayloft
