// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/KeyMapX11.h"

#include <array>
#include <cstdint>

namespace sayloft {

/// Translates the server's eight modifiers into the flags word of KeyFlag. What Mod1 to Mod5 stand
/// for is up to the keyboard map: Alt is option, Super (or Hyper) is command.
class ModifierFlagsX11 {
public:
    explicit ModifierFlagsX11(const KeyMapX11& map);

    /// `modifiers` is a mask of the eight; Caps Lock and Num Lock give nothing.
    [[nodiscard]] std::uint64_t flags(std::uint8_t modifiers) const;

private:
    std::array<std::uint64_t, KeyMapX11::modifierCount> m_flagOfModifier{};
};

}  // namespace sayloft
