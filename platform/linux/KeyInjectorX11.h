// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/KeyMapX11.h"

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <optional>

namespace sayloft {

/// A key, by what it means, with at most one modifier.
struct KeyChordX11 {
    struct Modifier {
        KeyMapX11::ModifierIndex index;
        xkb_keysym_t keysym;
    };

    xkb_keysym_t key = XKB_KEY_NoSymbol;
    std::optional<Modifier> modifier;
};

/// Types key chords with XTEST. Any one thread; a few round trips a call.
class KeyInjectorX11 {
public:
    /// `connection` must outlive it.
    explicit KeyInjectorX11(xcb_connection_t* connection) : m_connection(connection) {}

    /// Whether the server lets clients type; must be asked before `type`.
    [[nodiscard]] bool isAvailable() const;

    /// What to do about modifier keys that are down.
    enum class HeldKeys { release, refuse };
    enum class Typed { yes, noSuchKey, heldKeys };

    /// Presses and releases `chord` in layout `group` (from 0). On return the server has done
    /// everything; nothing was typed unless the answer is `yes`. Keys that were released stay so:
    /// pressing a key again that its owner lets go of at that moment would leave it stuck.
    [[nodiscard]] Typed type(const KeyChordX11& chord, const KeyMapX11& map, std::uint32_t group,
                             HeldKeys heldKeys);

private:
    void press(xcb_keycode_t key);
    void release(xcb_keycode_t key);
    void waitForServer();

    xcb_connection_t* m_connection;
};

}  // namespace sayloft
