// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TrayItem.h"

#include <QString>

#include <optional>

namespace sayloft {

/// The picture `name`.png of the bundle, 18 points high and as wide as its proportions ask. Nothing
/// when it is missing or no picture.
[[nodiscard]] std::optional<TrayImage> menuImage(const QString& name, bool isTemplate);

}  // namespace sayloft
