// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <initializer_list>

namespace sayloft {

/// Flags word of a keyboard event: every bit a platform may set is one of these or is ignored.
namespace KeyFlag {
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t fn = 0x800000;
}  // namespace KeyFlag

/// A set of modifier keys. `rawValue` is what the configuration stores for a chord.
class Mods {
public:
    std::int64_t rawValue = 0;

    constexpr Mods() = default;
    constexpr explicit Mods(std::int64_t raw) : rawValue(raw) {}
    constexpr Mods(std::initializer_list<Mods> members) {
        for (const Mods member : members)
            rawValue |= member.rawValue;
    }

    /// The five modifiers of a keyboard event's flags word; Caps Lock and all other bits are
    /// ignored.
    [[nodiscard]] static Mods fromFlags(std::uint64_t flags);

    static const Mods ctrl;
    static const Mods opt;
    static const Mods shift;
    static const Mods cmd;
    static const Mods fn;

    /// Glyphs in the order ⌃⌥⇧⌘fn without separators; "—" for the empty set.
    [[nodiscard]] QString name() const;

    [[nodiscard]] constexpr bool isEmpty() const { return rawValue == 0; }
    [[nodiscard]] constexpr bool contains(Mods other) const {
        return (rawValue & other.rawValue) == other.rawValue;
    }
    [[nodiscard]] constexpr bool isSubset(Mods of) const { return of.contains(*this); }
    [[nodiscard]] constexpr bool isSuperset(Mods of) const { return contains(of); }
    [[nodiscard]] constexpr bool isDisjoint(Mods with) const {
        return (rawValue & with.rawValue) == 0;
    }
    [[nodiscard]] constexpr Mods unionWith(Mods other) const {
        return Mods(rawValue | other.rawValue);
    }
    [[nodiscard]] constexpr Mods intersection(Mods other) const {
        return Mods(rawValue & other.rawValue);
    }
    [[nodiscard]] constexpr Mods symmetricDifference(Mods other) const {
        return Mods(rawValue ^ other.rawValue);
    }
    constexpr void insert(Mods member) { rawValue |= member.rawValue; }
    constexpr void remove(Mods member) { rawValue &= ~member.rawValue; }

    constexpr bool operator==(const Mods&) const = default;
};

inline constexpr Mods Mods::ctrl{std::int64_t{1}};
inline constexpr Mods Mods::opt{std::int64_t{2}};
inline constexpr Mods Mods::shift{std::int64_t{4}};
inline constexpr Mods Mods::cmd{std::int64_t{8}};
inline constexpr Mods Mods::fn{std::int64_t{16}};

}  // namespace sayloft
