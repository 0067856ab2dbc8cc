// SPDX-License-Identifier: MIT
#include "tests/support/Compositor.h"

#include "platform/linux/XcbHandles.h"
#include "tests/support/WaitUntil.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

bool isComposed(xcb_connection_t* connection) {
    const xcb_atom_t selection = internAtom(connection, "_NET_WM_CM_S0");
    const XcbOwned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

}  // namespace

Compositor::Compositor(const XServer& server)
    : m_program(QStringLiteral("picom"),
                {QStringLiteral("--backend"), QStringLiteral("xrender"), QStringLiteral("--config"),
                 QStringLiteral("/dev/null")},
                server.environment()) {
    const XcbConnection connection = connectToXServer();
    if (!connection || !waitUntil([&] { return isComposed(connection.get()); }))
        throw std::runtime_error("the compositor did not come up");
}

}  // namespace sayloft::test
