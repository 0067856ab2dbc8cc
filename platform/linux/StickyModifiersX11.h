// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace sayloft {

/// Takes modifiers off that are on although no key is down, as sticky keys leave them, so that they
/// do not join the keys that are typed meanwhile. Locked ones come back with the destructor; a
/// latched one has been for the next key, which has been typed by then.
class StickyModifiersX11 {
public:
    /// `kept` is a mask of modifiers to leave alone. One round trip; `connection` must outlive
    /// this.
    StickyModifiersX11(xcb_connection_t* connection, std::uint8_t kept);
    ~StickyModifiersX11();
    StickyModifiersX11(const StickyModifiersX11&) = delete;
    StickyModifiersX11& operator=(const StickyModifiersX11&) = delete;

private:
    xcb_connection_t* m_connection;
    std::uint8_t m_unlocked = 0;
};

}  // namespace sayloft
