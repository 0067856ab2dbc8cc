// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QString>

#include <vector>

namespace sayloft::test {

/// The icon that the window with this title gives to window managers and task bars, in all its
/// sizes. None where there is no such window, or where it names a size that it does not give.
[[nodiscard]] std::vector<QImage> iconsOf(const QString& windowTitle);

}  // namespace sayloft::test
