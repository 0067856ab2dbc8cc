// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

namespace sayloft {

/// What a text is to the reader.
enum class TextRole { primary, secondary, tertiary, good, warning };

/// How far apart two colours are for the eye: 1 for the same, 21 for black and white.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// Least contrast of every text to what is behind it.
inline constexpr double readableContrast = 4.5;

/// The colour of such a text on windows of this palette, light or dark.
[[nodiscard]] QColor textColour(TextRole role, const QPalette& palette);

}  // namespace sayloft
