// SPDX-License-Identifier: MIT
#include "platform/linux/StickyModifiersX11.h"

#include "platform/linux/XcbXkb.h"
#include "platform/linux/XkbState.h"

namespace sayloft {
namespace {

void change(xcb_connection_t* connection, std::uint8_t affectedLocks, std::uint8_t locks,
            std::uint8_t clearedLatches) {
    xcb_xkb_latch_lock_state(connection, XCB_XKB_ID_USE_CORE_KBD, affectedLocks, locks, 0, 0,
                             clearedLatches, 0, 0);
}

}  // namespace

StickyModifiersX11::StickyModifiersX11(xcb_connection_t* connection, std::uint8_t kept)
    : m_connection(connection) {
    const auto state = readXkbState(connection);
    if (!state)
        return;
    m_unlocked = static_cast<std::uint8_t>(state->locked & ~kept);
    if (m_unlocked != 0 || state->latched != 0)
        change(connection, m_unlocked, 0, state->latched);
}

StickyModifiersX11::~StickyModifiersX11() {
    if (m_unlocked != 0)
        change(m_connection, m_unlocked, m_unlocked, 0);
}

}  // namespace sayloft
