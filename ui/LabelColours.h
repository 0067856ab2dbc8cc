// SPDX-License-Identifier: MIT
#pragma once

class QColor;
class QPalette;

namespace sayloft {

// Colours of text on the palette's window colour, readable on light and on dark ones.

/// Green: what is needed is there.
[[nodiscard]] QColor metColour(const QPalette& palette);
/// Orange: what is needed is not there yet.
[[nodiscard]] QColor missingColour(const QPalette& palette);
/// Less prominent than ordinary text.
[[nodiscard]] QColor secondaryColour(const QPalette& palette);
/// Less prominent still.
[[nodiscard]] QColor tertiaryColour(const QPalette& palette);

using LabelColour = QColor (*)(const QPalette&);

}  // namespace sayloft
