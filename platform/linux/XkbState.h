// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace sayloft {

/// What the X server holds for the keyboard: masks of its eight modifiers, and the active layout.
struct XkbState {
    std::uint8_t base = 0;     ///< keys that are down
    std::uint8_t latched = 0;  ///< counts for the next key
    std::uint8_t locked = 0;   ///< stays until it is pressed again
    std::uint8_t group = 0;    ///< from 0
    /// Number of the request that read it: events that carry a smaller one are older.
    std::uint32_t sequence = 0;
};

/// Whether the server has the XKB extension; must be asked once on every connection before any
/// other request of that extension.
[[nodiscard]] bool useXkb(xcb_connection_t* connection);

/// Nothing when the server is gone. One round trip.
[[nodiscard]] std::optional<XkbState> readXkbState(xcb_connection_t* connection);

}  // namespace sayloft
