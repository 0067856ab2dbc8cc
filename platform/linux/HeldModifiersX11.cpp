// SPDX-License-Identifier: MIT
#include "platform/linux/HeldModifiersX11.h"

#include "platform/linux/XcbHandles.h"

#include <algorithm>
#include <iterator>

namespace sayloft {

HeldModifiersX11 HeldModifiersX11::read(xcb_connection_t* connection, const KeyMapX11& map) {
    HeldModifiersX11 held;
    const XcbOwned<xcb_query_keymap_reply_t> pressed(
        xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    if (!pressed)
        return held;
    const auto isDown = [&](xcb_keycode_t key) {
        return (pressed->keys[key / 8] & (1U << (key % 8))) != 0;
    };
    const std::uint8_t locks = map.lockModifiers();
    for (KeyMapX11::ModifierIndex modifier = 0; modifier < KeyMapX11::modifierCount; ++modifier) {
        if ((locks & (1U << modifier)) != 0)
            continue;
        const bool first = modifier == KeyMapX11::shift || modifier == KeyMapX11::control;
        const auto& keys = map.keysOf(modifier);
        std::copy_if(keys.begin(), keys.end(),
                     std::back_inserter(first ? held.beforeOthers : held.afterOthers), isDown);
    }
    return held;
}

}  // namespace sayloft
