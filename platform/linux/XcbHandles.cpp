// SPDX-License-Identifier: MIT
#include "platform/linux/XcbHandles.h"

#include <cstdint>
#include <cstring>

namespace sayloft {

XcbConnection connectToXServer() {
    XcbConnection connection(xcb_connect(nullptr, nullptr));
    if (xcb_connection_has_error(connection.get()) != 0)
        return nullptr;
    return connection;
}

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbOwned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

xcb_window_t rootWindow(xcb_connection_t* connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    return setup == nullptr ? xcb_window_t{XCB_WINDOW_NONE}
                            : xcb_setup_roots_iterator(setup).data->root;
}

}  // namespace sayloft
