// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>

namespace sayloft::test {

/// Whether no eye tells the one from the other: opacity and colours differ by 1 in 255 at most.
[[nodiscard]] bool isAlmost(const QColor& one, const QColor& other);

/// The colour that most pixels have which are not empty; transparent where all are.
[[nodiscard]] QColor mainColour(const QImage& picture);

}  // namespace sayloft::test
