// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemSounds.h"

namespace sayloft {

/// Silence.
class SystemSoundsNull : public SystemSounds {
public:
    void play(const QString& /*name*/) override {}
};

}  // namespace sayloft
