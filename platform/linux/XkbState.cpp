// SPDX-License-Identifier: MIT
#include "platform/linux/XkbState.h"

#include "platform/linux/XcbHandles.h"
#include "platform/linux/XcbXkb.h"

namespace sayloft {

bool useXkb(xcb_connection_t* connection) {
    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (extension == nullptr || extension->present == 0)
        return false;
    const XcbOwned<xcb_xkb_use_extension_reply_t> reply(xcb_xkb_use_extension_reply(
        connection, xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
        nullptr));
    return reply && reply->supported != 0;
}

std::optional<XkbState> readXkbState(xcb_connection_t* connection) {
    const auto cookie = xcb_xkb_get_state(connection, XCB_XKB_ID_USE_CORE_KBD);
    const XcbOwned<xcb_xkb_get_state_reply_t> reply(
        xcb_xkb_get_state_reply(connection, cookie, nullptr));
    if (!reply)
        return std::nullopt;
    return XkbState{.base = reply->baseMods,
                    .latched = reply->latchedMods,
                    .locked = reply->lockedMods,
                    .group = reply->group,
                    .sequence = cookie.sequence};
}

}  // namespace sayloft
