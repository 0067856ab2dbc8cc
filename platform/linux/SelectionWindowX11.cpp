// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionWindowX11.h"

#include "platform/linux/XcbHandles.h"

#include <cstdint>

namespace sayloft {

xcb_window_t createSelectionWindow(xcb_connection_t* connection) {
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, rootWindow(connection), -1, -1, 1,
                      1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    return window;
}

xcb_window_t selectionOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const XcbOwned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace sayloft
