// SPDX-License-Identifier: MIT
#include "models/StarterModel.h"

namespace sayloft {

std::optional<ModelInfo> starterModel() {
    return ModelInfo{QStringLiteral("starter"), QStringLiteral("starter-en-us.model"), QString(),
                     QStringLiteral("Starter — English, offline, lower accuracy")};
}

}  // namespace sayloft
