// SPDX-License-Identifier: MIT
#pragma once

#include <QChar>
#include <QString>

namespace sayloft {

/// Whether a new line begins after the character.
[[nodiscard]] bool isLineBreak(QChar character);

/// User-perceived characters (extended grapheme clusters of Unicode Standard Annex 29).
[[nodiscard]] int characterCount(const QString& text);

/// Pieces between spaces and line breaks; empty ones do not count.
[[nodiscard]] int wordCount(const QString& text);

/// Rounded half away from zero. `seconds` must be positive.
[[nodiscard]] int wordsPerMinute(int words, double seconds);

}  // namespace sayloft
