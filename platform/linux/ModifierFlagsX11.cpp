// SPDX-License-Identifier: MIT
#include "platform/linux/ModifierFlagsX11.h"

#include "platform/Mods.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace sayloft {
namespace {

std::uint64_t flagOf(const KeyMapX11& map, KeyMapX11::ModifierIndex modifier) {
    if (map.makes(modifier, {XKB_KEY_Num_Lock}))
        return 0;
    if (map.makes(modifier, {XKB_KEY_Alt_L, XKB_KEY_Alt_R}))
        return KeyFlag::option;
    if (map.makes(modifier, {XKB_KEY_Super_L, XKB_KEY_Super_R, XKB_KEY_Hyper_L, XKB_KEY_Hyper_R}))
        return KeyFlag::command;
    // Meta comes last: it is Alt on most keyboards, and the Windows key, whose modifier then still
    // has a Super key too, where the user has moved it there.
    if (map.makes(modifier, {XKB_KEY_Meta_L, XKB_KEY_Meta_R}))
        return KeyFlag::option;
    return 0;
}

}  // namespace

ModifierFlagsX11::ModifierFlagsX11(const KeyMapX11& map) {
    m_flagOfModifier[KeyMapX11::shift] = KeyFlag::shift;
    m_flagOfModifier[KeyMapX11::control] = KeyFlag::control;
    for (auto modifier = KeyMapX11::mod1; modifier < KeyMapX11::modifierCount; ++modifier)
        m_flagOfModifier[modifier] = flagOf(map, modifier);
}

std::uint64_t ModifierFlagsX11::flags(std::uint8_t modifiers) const {
    std::uint64_t flags = 0;
    for (std::size_t modifier = 0; modifier < m_flagOfModifier.size(); ++modifier) {
        if ((modifiers & (1U << modifier)) != 0)
            flags |= m_flagOfModifier[modifier];
    }
    return flags;
}

}  // namespace sayloft
