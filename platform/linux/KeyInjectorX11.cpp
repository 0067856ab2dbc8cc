// SPDX-License-Identifier: MIT
#include "platform/linux/KeyInjectorX11.h"

#include "platform/linux/HeldModifiersX11.h"
#include "platform/linux/StickyModifiersX11.h"
#include "platform/linux/XcbHandles.h"

#include <xcb/xtest.h>

namespace sayloft {

bool KeyInjectorX11::isAvailable() const {
    const xcb_query_extension_reply_t* extension =
        xcb_get_extension_data(m_connection, &xcb_test_id);
    return extension != nullptr && extension->present != 0;
}

KeyInjectorX11::Typed KeyInjectorX11::type(const KeyChordX11& chord, const KeyMapX11& map,
                                           std::uint32_t group, HeldKeys heldKeys) {
    const auto key = map.keyFor(chord.key, group);
    std::optional<xcb_keycode_t> modifierKey;
    if (chord.modifier)
        modifierKey = map.modifierKey(chord.modifier->index, chord.modifier->keysym);
    if (!key || (chord.modifier && !modifierKey))
        return Typed::noSuchKey;
    {
        // A modifier that goes down between the look and the keys would make another chord of them.
        const XcbServerGrab nobodyElse(m_connection);
        const StickyModifiersX11 withoutSticky(m_connection, map.lockModifiers());
        const HeldModifiersX11 held = HeldModifiersX11::read(m_connection, map);
        if (heldKeys == HeldKeys::refuse && !held.empty())
            return Typed::heldKeys;
        for (const xcb_keycode_t other : held.beforeOthers)
            release(other);
        if (modifierKey)
            press(*modifierKey);
        for (const xcb_keycode_t other : held.afterOthers)
            release(other);
        press(*key);
        release(*key);
        if (modifierKey)
            release(*modifierKey);
    }
    waitForServer();
    return Typed::yes;
}

void KeyInjectorX11::press(xcb_keycode_t key) {
    xcb_test_fake_input(m_connection, XCB_KEY_PRESS, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                        0);
}

void KeyInjectorX11::release(xcb_keycode_t key) {
    xcb_test_fake_input(m_connection, XCB_KEY_RELEASE, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                        0);
}

void KeyInjectorX11::waitForServer() {
    const XcbOwned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

}  // namespace sayloft
