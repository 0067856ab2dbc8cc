// SPDX-License-Identifier: MIT
#include "platform/Mods.h"

#include <array>

namespace sayloft {
namespace {

struct Modifier {
    Mods member;
    std::uint64_t flag;
    const char16_t* glyph;
};

// The order is the order of the glyphs in a chord's name.
constexpr std::array modifiers{
    Modifier{Mods::ctrl, KeyFlag::control, u"⌃"}, Modifier{Mods::opt, KeyFlag::option, u"⌥"},
    Modifier{Mods::shift, KeyFlag::shift, u"⇧"},  Modifier{Mods::cmd, KeyFlag::command, u"⌘"},
    Modifier{Mods::fn, KeyFlag::fn, u"fn"},
};

}  // namespace

Mods Mods::fromFlags(std::uint64_t flags) {
    Mods held;
    for (const Modifier& modifier : modifiers) {
        if ((flags & modifier.flag) != 0)
            held.insert(modifier.member);
    }
    return held;
}

QString Mods::name() const {
    QString glyphs;
    for (const Modifier& modifier : modifiers) {
        if (contains(modifier.member))
            glyphs += QString::fromUtf16(modifier.glyph);
    }
    return glyphs.isEmpty() ? QStringLiteral("—") : glyphs;
}

}  // namespace sayloft
