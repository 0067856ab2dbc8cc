// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

namespace sayloft {

/// An invisible window that owns or asks for selections and hears of changes of its properties.
[[nodiscard]] xcb_window_t createSelectionWindow(xcb_connection_t* connection);

/// XCB_WINDOW_NONE when nobody owns the selection or the server is gone.
[[nodiscard]] xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection);

}  // namespace sayloft
