// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace sayloft {

struct XcbDisconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using XcbConnection = std::unique_ptr<xcb_connection_t, XcbDisconnect>;

struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};
/// A reply, event or error that libxcb has allocated.
template <typename T>
using XcbOwned = std::unique_ptr<T, XcbFree>;

/// While it lives the server serves no other client, so that nothing changes between a look and
/// what is done about it. For a few round trips at most: every program of the desktop waits.
class XcbServerGrab {
public:
    explicit XcbServerGrab(xcb_connection_t* connection) : m_connection(connection) {
        xcb_grab_server(connection);
    }
    ~XcbServerGrab() {
        xcb_ungrab_server(m_connection);
        xcb_flush(m_connection);
    }
    XcbServerGrab(const XcbServerGrab&) = delete;
    XcbServerGrab& operator=(const XcbServerGrab&) = delete;

private:
    xcb_connection_t* m_connection;
};

/// A connection to the server that DISPLAY names; null when there is none.
[[nodiscard]] XcbConnection connectToXServer();

/// XCB_ATOM_NONE when the server is gone.
[[nodiscard]] xcb_atom_t internAtom(xcb_connection_t* connection, const char* name);

/// The root window of the connection's first screen; XCB_WINDOW_NONE when the server is gone.
[[nodiscard]] xcb_window_t rootWindow(xcb_connection_t* connection);

}  // namespace sayloft
