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

}  // namespace

WindowManager::WindowManager(const XServer& server)
    : m_program(QStringLiteral("openbox"), {}, server.environment()) {
    const XcbConnection connection = connectToXServer();
    if (!connection || !waitUntil([&] { return isManaged(connection.get()); }))
        throw std::runtime_error("the window manager did not come up");
}

}  // namespace sayloft::test
