// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace sayloft {

/// `whiteLevel` is 0, black, to 1; `alpha` is 0 to 1.
[[nodiscard]] inline QColor grey(double whiteLevel, double alpha) {
    const auto level = static_cast<float>(whiteLevel);
    return QColor::fromRgbF(level, level, level, static_cast<float>(alpha));
}

[[nodiscard]] inline QColor white(double alpha) {
    return grey(1, alpha);
}

}  // namespace sayloft
