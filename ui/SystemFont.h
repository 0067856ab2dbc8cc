// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>

namespace sayloft {

/// The desktop's font in a size relative to its own, which stands for 13 points.
[[nodiscard]] QFont systemFont(double points, QFont::Weight weight = QFont::Normal);

/// A width that suits an ordinary font; more where the desktop's font is larger than that, so that
/// as much text fits.
[[nodiscard]] int widthForFont(int width);

}  // namespace sayloft
