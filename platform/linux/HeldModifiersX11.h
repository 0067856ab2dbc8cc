// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/KeyMapX11.h"

#include <xcb/xcb.h>

#include <vector>

namespace sayloft {

/// The modifier keys that are down, Caps Lock and Num Lock aside, in the order in which they may be
/// let go in the user's place.
struct HeldModifiersX11 {
    /// Shift and Control: first, since pressing another modifier beside them may be the user's
    /// shortcut for changing the layout.
    std::vector<xcb_keycode_t> beforeOthers;
    /// Alt, Super and the rest: only after another key has gone down, since many desktops and
    /// applications open a launcher or a menu when such a key is released alone.
    std::vector<xcb_keycode_t> afterOthers;

    [[nodiscard]] bool empty() const { return beforeOthers.empty() && afterOthers.empty(); }

    /// Empty when the server is gone. One round trip.
    [[nodiscard]] static HeldModifiersX11 read(xcb_connection_t* connection, const KeyMapX11& map);
};

}  // namespace sayloft
