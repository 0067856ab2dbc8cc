// SPDX-License-Identifier: MIT
#pragma once

#include "models/ModelCatalogue.h"

#include <optional>

namespace sayloft {

/// The model that comes with the program; nothing in a build without it.
[[nodiscard]] std::optional<ModelInfo> starterModel();

}  // namespace sayloft
