// SPDX-License-Identifier: MIT
#include "tests/support/WindowManager.h"

#include "platform/linux/XcbHandles.h"
#include "tests/support/WaitUntil.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

bool isManaged(xcb_connection_t* connection) {
    const auto cookie =
        xcb_get_property(connection, 0, rootWindow(connection),
                         internAtom(connection, "_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 0, 1);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    return reply && reply->type == XCB_ATOM_WINDOW;
}

xcb_window_t createWindow(xcb_connection_t* connection) {
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, rootWindow(connection), 0, 0, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
}

bool isShown(xcb_connection_t* connection, xcb_window_t window) {
    const XcbOwned<xcb_get_window_attributes_reply_t> reply(xcb_get_window_attributes_reply(
        connection, xcb_get_window_attributes(connection, window), nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

// openbox announces itself before it listens, and never shows what asked to be shown in between.
bool showsNewWindows(xcb_connection_t* connection) {
    const xcb_window_t window = createWindow(connection);
    const bool shown = waitUntil([&] {
        xcb_map_window(connection, window);
        return isShown(connection, window);
    });
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
    return shown;
}

}  // namespace

WindowManager::WindowManager(const XServer& server)
    : m_program(QStringLiteral("openbox"), {}, server.environment()) {
    const XcbConnection connection = connectToXServer();
    if (!connection || !waitUntil([&] { return isManaged(connection.get()); }) ||
        !showsNewWindows(connection.get()))
        throw std::runtime_error("the window manager did not come up");
}

}  // namespace sayloft::test
