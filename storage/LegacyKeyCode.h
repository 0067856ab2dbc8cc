// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace sayloft {

/// Older configurations stored one modifier key per chord as a hardware key code. 0 for Caps Lock
/// and for every code that is not a modifier's.
[[nodiscard]] std::int64_t chordForLegacyKeyCode(std::uint16_t keyCode);

}  // namespace sayloft
