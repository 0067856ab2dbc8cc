// SPDX-License-Identifier: MIT
#include "fuzz/support/FakeXServer.h"

#include "fuzz/support/FakeXReply.h"

#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

// Parameters have the names of libxcb's headers where they are used, and none elsewhere.
using namespace sayloft::fuzz;

namespace {

constexpr std::uint16_t largestRequest = 64;  // in units of four bytes, so that pieces are small
constexpr xcb_atom_t firstOwnAtom = 100;      // after those that the protocol defines
constexpr std::uint8_t firstFixesEvent = 87;

std::vector<std::string>& atomNames() {
    static std::vector<std::string> names;
    return names;
}

xcb_void_cookie_t done() {
    return {0};
}

// The setup of a server with one screen, as it comes over the wire.
struct Setup {
    xcb_setup_t head{};
    xcb_screen_t screen{};
};

Setup& setup() {
    static Setup setup = [] {
        Setup made;
        made.head.resource_id_mask = 0x1fffff;
        made.head.roots_len = 1;
        made.screen.root = FakeXServer::root;
        return made;
    }();
    return setup;
}

}  // namespace

namespace sayloft::fuzz {

FakeXServer& fakeXServer() {
    static FakeXServer server;
    return server;
}

xcb_atom_t fakeAtom(const std::string& name) {
    auto& names = atomNames();
    auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        found = names.insert(names.end(), name);
    return firstOwnAtom + static_cast<xcb_atom_t>(found - names.begin());
}

}  // namespace sayloft::fuzz

extern "C" {

// The connection: any address that is not null.

xcb_connection_t* xcb_connect(const char*, int*) {
    return reinterpret_cast<xcb_connection_t*>(&setup());
}
void xcb_disconnect(xcb_connection_t*) {}
int xcb_connection_has_error(xcb_connection_t*) {
    return fakeXServer().isGone ? 1 : 0;
}
int xcb_flush(xcb_connection_t*) {
    return 1;
}
int xcb_get_file_descriptor(xcb_connection_t*) {
    return -1;
}
uint32_t xcb_get_maximum_request_length(xcb_connection_t*) {
    return largestRequest;
}
uint32_t xcb_generate_id(xcb_connection_t*) {
    return FakeXServer::firstWindow + fakeXServer().windowCount++;
}
const xcb_setup_t* xcb_get_setup(xcb_connection_t*) {
    return &setup().head;
}
xcb_screen_iterator_t xcb_setup_roots_iterator(const xcb_setup_t*) {
    return {&setup().screen, 1, 0};
}
const xcb_query_extension_reply_t* xcb_get_extension_data(xcb_connection_t*,
                                                          xcb_extension_t* extension) {
    static xcb_query_extension_reply_t fixes{};
    static xcb_query_extension_reply_t others{};
    fixes.present = 1;
    fixes.first_event = firstFixesEvent;
    others.present = 1;
    return extension == &xcb_xfixes_id ? &fixes : &others;
}

// Events: the only one that is waited for is the change of our own property that tells the time.

xcb_generic_event_t* xcb_poll_for_event(xcb_connection_t*) {
    return nullptr;
}
xcb_generic_event_t* xcb_poll_for_queued_event(xcb_connection_t*) {
    return nullptr;
}
xcb_generic_event_t* xcb_wait_for_event(xcb_connection_t*) {
    if (fakeXServer().isGone)
        return nullptr;
    auto* event = newReply<xcb_property_notify_event_t>();
    event->response_type = XCB_PROPERTY_NOTIFY;
    event->window = fakeXServer().changedWindow;
    event->atom = XCB_ATOM_WM_NAME;
    event->time = ++fakeXServer().time;
    return reinterpret_cast<xcb_generic_event_t*>(event);
}

// Requests without an answer.

xcb_void_cookie_t xcb_create_window(xcb_connection_t*, uint8_t, xcb_window_t, xcb_window_t, int16_t,
                                    int16_t, uint16_t, uint16_t, uint16_t, uint16_t, xcb_visualid_t,
                                    uint32_t, const void*) {
    return done();
}
xcb_void_cookie_t xcb_destroy_window(xcb_connection_t*, xcb_window_t) {
    return done();
}
xcb_void_cookie_t xcb_delete_property(xcb_connection_t*, xcb_window_t, xcb_atom_t) {
    return done();
}
xcb_void_cookie_t xcb_change_window_attributes(xcb_connection_t*, xcb_window_t, uint32_t,
                                               const void*) {
    return done();
}
xcb_void_cookie_t xcb_send_event(xcb_connection_t*, uint8_t, xcb_window_t, uint32_t, const char*) {
    return done();
}
xcb_void_cookie_t xcb_grab_server(xcb_connection_t*) {
    return done();
}
xcb_void_cookie_t xcb_ungrab_server(xcb_connection_t*) {
    return done();
}
xcb_void_cookie_t xcb_set_selection_owner(xcb_connection_t*, xcb_window_t owner, xcb_atom_t,
                                          xcb_timestamp_t) {
    fakeXServer().selectionOwner = owner;
    return done();
}
xcb_void_cookie_t xcb_convert_selection(xcb_connection_t*, xcb_window_t requestor, xcb_atom_t,
                                        xcb_atom_t target, xcb_atom_t property, xcb_timestamp_t) {
    fakeXServer().askedWindow = requestor;
    fakeXServer().askedTarget = target;
    fakeXServer().askedProperty = property;
    return done();
}
xcb_void_cookie_t xcb_change_property(xcb_connection_t*, uint8_t, xcb_window_t window, xcb_atom_t,
                                      xcb_atom_t, uint8_t format, uint32_t data_len,
                                      const void* data) {
    fakeXServer().changedWindow = window;
    // As if it were sent: reads every byte that the caller names.
    static std::string sent;
    sent.assign(static_cast<const char*>(data), data == nullptr ? 0 : data_len * (format / 8U));
    return done();
}

// Requests with an answer.

xcb_intern_atom_cookie_t xcb_intern_atom(xcb_connection_t*, uint8_t, uint16_t name_len,
                                         const char* name) {
    return {fakeAtom(std::string(name, name_len))};
}
xcb_intern_atom_reply_t* xcb_intern_atom_reply(xcb_connection_t*, xcb_intern_atom_cookie_t cookie,
                                               xcb_generic_error_t**) {
    auto* reply = replyUnlessGone<xcb_intern_atom_reply_t>();
    if (reply != nullptr)
        reply->atom = cookie.sequence;
    return reply;
}
xcb_get_atom_name_cookie_t xcb_get_atom_name(xcb_connection_t*, xcb_atom_t atom) {
    return {atom};
}
xcb_get_atom_name_reply_t* xcb_get_atom_name_reply(xcb_connection_t*,
                                                   xcb_get_atom_name_cookie_t cookie,
                                                   xcb_generic_error_t**) {
    const std::size_t index = std::size_t{cookie.sequence} - firstOwnAtom;
    if (fakeXServer().isGone || cookie.sequence < firstOwnAtom || index >= atomNames().size())
        return nullptr;
    const std::string& name = atomNames()[index];
    auto* reply = newReply<xcb_get_atom_name_reply_t>(name.size());
    reply->name_len = static_cast<std::uint16_t>(name.size());
    std::memcpy(reply + 1, name.data(), name.size());
    return reply;
}
xcb_get_property_cookie_t xcb_get_property(xcb_connection_t*, uint8_t, xcb_window_t, xcb_atom_t,
                                           xcb_atom_t type, uint32_t, uint32_t) {
    return {type};
}
xcb_get_property_reply_t* xcb_get_property_reply(xcb_connection_t*,
                                                 xcb_get_property_cookie_t cookie,
                                                 xcb_generic_error_t**) {
    const FakeXServer& server = fakeXServer();
    if (server.isGone)
        return nullptr;
    const FakeXServer::Property& property = server.property;
    // Asked for another type, a server tells the type and keeps the value.
    const bool fits =
        cookie.sequence == XCB_GET_PROPERTY_TYPE_ANY || cookie.sequence == property.type;
    const bool isThere = property.type != XCB_ATOM_NONE;
    const std::size_t unit = property.format / 8U;
    const std::size_t count = isThere && fits ? property.data.size() / unit : 0;
    auto* reply = newReply<xcb_get_property_reply_t>(count * unit);
    reply->type = property.type;
    reply->format = isThere ? property.format : std::uint8_t{0};
    reply->value_len = static_cast<std::uint32_t>(count);
    std::memcpy(reply + 1, property.data.data(), count * unit);
    return reply;
}
xcb_get_selection_owner_cookie_t xcb_get_selection_owner(xcb_connection_t*, xcb_atom_t) {
    return {0};
}
xcb_get_selection_owner_reply_t* xcb_get_selection_owner_reply(xcb_connection_t*,
                                                               xcb_get_selection_owner_cookie_t,
                                                               xcb_generic_error_t**) {
    auto* reply = replyUnlessGone<xcb_get_selection_owner_reply_t>();
    if (reply != nullptr)
        reply->owner = fakeXServer().selectionOwner;
    return reply;
}
xcb_xfixes_query_version_cookie_t xcb_xfixes_query_version(xcb_connection_t*, uint32_t, uint32_t) {
    return {0};
}
xcb_xfixes_query_version_reply_t* xcb_xfixes_query_version_reply(xcb_connection_t*,
                                                                 xcb_xfixes_query_version_cookie_t,
                                                                 xcb_generic_error_t**) {
    return replyUnlessGone<xcb_xfixes_query_version_reply_t>();
}
xcb_void_cookie_t xcb_xfixes_select_selection_input(xcb_connection_t*, xcb_window_t, xcb_atom_t,
                                                    uint32_t) {
    return done();
}

}  // extern "C"
