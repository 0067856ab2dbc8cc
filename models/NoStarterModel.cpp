// SPDX-License-Identifier: MIT
// Stands for StarterModel.cpp in a build without the starter.
#include "models/StarterModel.h"

namespace sayloft {

std::optional<ModelInfo> starterModel() {
    return std::nullopt;
}

}  // namespace sayloft
