// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

namespace sayloft {

struct XkbKeymapUnref {
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};
struct XkbContextUnref {
    void operator()(xkb_context* context) const { xkb_context_unref(context); }
};

/// The X server's keyboard map as it was when it was read: what each key means, and which keys make
/// each of the eight modifiers.
class KeyMapX11 {
public:
    /// One of the server's eight modifiers: 0 Shift, 1 Lock, 2 Control, 3 to 7 Mod1 to Mod5.
    using ModifierIndex = std::size_t;
    static constexpr std::size_t modifierCount = 8;
    static constexpr ModifierIndex shift = 0;
    static constexpr ModifierIndex lock = 1;
    static constexpr ModifierIndex control = 2;
    static constexpr ModifierIndex mod1 = 3;

    /// Nothing when the server is gone or has no keyboard. A few round trips.
    [[nodiscard]] static std::optional<KeyMapX11> read(xcb_connection_t* connection);

    /// A key that gives `keysym` without any modifier while layout `group` (from 0) is active.
    /// Layouts that `group` itself does not have are searched next, in their order.
    [[nodiscard]] std::optional<xcb_keycode_t> keyFor(xkb_keysym_t keysym,
                                                      std::uint32_t group) const;

    /// A key that makes `modifier`, one that carries `keysym` where there is one.
    [[nodiscard]] std::optional<xcb_keycode_t> modifierKey(ModifierIndex modifier,
                                                           xkb_keysym_t keysym) const;

    [[nodiscard]] const std::vector<xcb_keycode_t>& keysOf(ModifierIndex modifier) const;

    /// Whether one of the modifier's keys carries one of `keysyms`, in any layout, at any level.
    [[nodiscard]] bool makes(ModifierIndex modifier,
                             std::initializer_list<xkb_keysym_t> keysyms) const;

    /// The modifiers that stay on after their key is up, as a mask: Lock, and the one of Num Lock.
    [[nodiscard]] std::uint8_t lockModifiers() const;

private:
    KeyMapX11() = default;
    [[nodiscard]] std::optional<xcb_keycode_t> keyInGroup(xkb_keysym_t keysym,
                                                          std::uint32_t group) const;
    [[nodiscard]] bool carries(xcb_keycode_t key, xkb_keysym_t keysym) const;

    std::unique_ptr<xkb_context, XkbContextUnref> m_context;
    std::unique_ptr<xkb_keymap, XkbKeymapUnref> m_keymap;
    std::array<std::vector<xcb_keycode_t>, modifierCount> m_modifierKeys;
};

}  // namespace sayloft
