// SPDX-License-Identifier: MIT
#include "tests/support/BoundingShape.h"

#include "platform/linux/XcbHandles.h"

#include <xcb/shape.h>

namespace sayloft::test {

QRegion boundingShape(xcb_connection_t* connection, WId window) {
    const auto cookie = xcb_shape_get_rectangles(connection, static_cast<xcb_window_t>(window),
                                                 XCB_SHAPE_SK_BOUNDING);
    const XcbOwned<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(connection, cookie, nullptr));
    QRegion region;
    const auto* rects = xcb_shape_get_rectangles_rectangles(reply.get());
    for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
        region += QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height);
    return region;
}

}  // namespace sayloft::test
