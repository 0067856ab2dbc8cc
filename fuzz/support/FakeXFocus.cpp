// SPDX-License-Identifier: MIT
// Which window has the keyboard, and whose it is.
#include "fuzz/support/FakeXReply.h"

#include <xcb/res.h>
#include <xcb/xcb.h>

using namespace sayloft::fuzz;

extern "C" {

xcb_get_input_focus_cookie_t xcb_get_input_focus(xcb_connection_t*) {
    return {0};
}
xcb_get_input_focus_reply_t* xcb_get_input_focus_reply(xcb_connection_t*,
                                                       xcb_get_input_focus_cookie_t,
                                                       xcb_generic_error_t**) {
    auto* reply = replyUnlessGone<xcb_get_input_focus_reply_t>();
    if (reply != nullptr)
        reply->focus = fakeXServer().focus;
    return reply;
}
xcb_query_tree_cookie_t xcb_query_tree(xcb_connection_t*, xcb_window_t) {
    return {0};
}
xcb_query_tree_reply_t* xcb_query_tree_reply(xcb_connection_t*, xcb_query_tree_cookie_t,
                                             xcb_generic_error_t**) {
    auto* reply = replyUnlessGone<xcb_query_tree_reply_t>();
    if (reply != nullptr)
        reply->parent = fakeXServer().parent;
    return reply;
}
xcb_query_pointer_cookie_t xcb_query_pointer(xcb_connection_t*, xcb_window_t) {
    return {0};
}
xcb_query_pointer_reply_t* xcb_query_pointer_reply(xcb_connection_t*, xcb_query_pointer_cookie_t,
                                                   xcb_generic_error_t**) {
    auto* reply = replyUnlessGone<xcb_query_pointer_reply_t>();
    if (reply != nullptr)
        reply->child = fakeXServer().parent;
    return reply;
}
xcb_res_query_version_cookie_t xcb_res_query_version(xcb_connection_t*, uint8_t, uint8_t) {
    return {0};
}
// Older than client ids.
xcb_res_query_version_reply_t* xcb_res_query_version_reply(xcb_connection_t*,
                                                           xcb_res_query_version_cookie_t,
                                                           xcb_generic_error_t**) {
    return replyUnlessGone<xcb_res_query_version_reply_t>();
}

}  // extern "C"
