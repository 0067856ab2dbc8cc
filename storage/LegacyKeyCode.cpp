// SPDX-License-Identifier: MIT
#include "storage/LegacyKeyCode.h"

#include "platform/Mods.h"

#include <array>
#include <cstddef>

namespace sayloft {

std::int64_t chordForLegacyKeyCode(std::uint16_t keyCode) {
    constexpr std::uint16_t first = 54;
    constexpr std::array chords{
        Mods::cmd,    // 54, right Command
        Mods::cmd,    // 55, Command
        Mods::shift,  // 56, Shift
        Mods(),       // 57, Caps Lock
        Mods::opt,    // 58, Option
        Mods::ctrl,   // 59, Control
        Mods::shift,  // 60, right Shift
        Mods::opt,    // 61, right Option
        Mods::ctrl,   // 62, right Control
        Mods::fn,     // 63, fn
    };
    if (keyCode < first || keyCode >= first + chords.size())
        return 0;
    return chords.at(std::size_t{keyCode} - first).rawValue;
}

}  // namespace sayloft
