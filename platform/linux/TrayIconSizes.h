// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TrayItem.h"

#include <QImage>

#include <vector>

namespace sayloft {

/// The picture of a look in its colours, in the sizes that panels ask for: 18 points at usual scale
/// factors and the sizes between. Empty where the look has no picture.
[[nodiscard]] std::vector<QImage> trayIconSizes(const TrayLook& look);

}  // namespace sayloft
