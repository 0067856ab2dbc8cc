// SPDX-License-Identifier: MIT
#include "platform/linux/FocusX11.h"

#include "platform/linux/XcbHandles.h"

#include <QList>

#include <xcb/res.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace sayloft {
namespace {

// The one table of terminals and like-minded editors: class part of WM_CLASS, in lower case.
constexpr std::array TERMINAL_CLASSES{
    "alacritty",
    "aterm",
    "blackbox-terminal",
    "com.gexperts.tilix",
    "com.mitchellh.ghostty",
    "com.raggesilver.blackbox",
    "contour",
    "cool-retro-term",
    "deepin-terminal",
    "emacs",
    "eterm",
    "foot",
    "footclient",
    "gnome-terminal",
    "gnome-terminal-server",
    "guake",
    "gvim",
    "hyper",
    "io.elementary.terminal",
    "kgx",
    "kitty",
    "konsole",
    "koi8rxterm",
    "lxterm",
    "lxterminal",
    "mate-terminal",
    "mlterm",
    "org.codeberg.dnkl.foot",
    "org.gnome.console",
    "org.gnome.ptyxis",
    "org.gnome.terminal",
    "org.kde.konsole",
    "org.kde.yakuake",
    "org.wezfurlong.wezterm",
    "pterm",
    "qterminal",
    "rio",
    "roxterm",
    "rxvt",
    "sakura",
    "st",
    "st-256color",
    "stterm",
    "stterm-256color",
    "tabby",
    "terminator",
    "terminology",
    "termit",
    "tilda",
    "tilix",
    "urxvt",
    "uxterm",
    "wezterm",
    "xfce4-terminal",
    "xterm",
    "yakuake",
    "zutty",
};

constexpr int DEEPEST_WINDOW_TREE = 64;
constexpr std::uint32_t WM_CLASS_LONGS = 256;

/// Process ids that the server knows for the clients of `windows`; 0 where it knows none.
std::array<std::uint32_t, 2> processIds(xcb_connection_t* connection,
                                        std::array<xcb_window_t, 2> windows,
                                        std::uint32_t clientMask) {
    std::array<xcb_res_client_id_spec_t, 2> wanted{};
    for (std::size_t i = 0; i < wanted.size(); ++i)
        wanted[i] = {windows[i], XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto cookie = xcb_res_query_client_ids(connection, wanted.size(), wanted.data());
    const XcbOwned<xcb_res_query_client_ids_reply_t> reply(
        xcb_res_query_client_ids_reply(connection, cookie, nullptr));
    std::array<std::uint32_t, 2> pids{};
    if (!reply)
        return pids;
    auto entry = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; entry.rem > 0; xcb_res_client_id_value_next(&entry)) {
        if (xcb_res_client_id_value_value_length(entry.data) < 1)
            continue;
        for (std::size_t i = 0; i < windows.size(); ++i) {
            if ((entry.data->spec.client & clientMask) == (windows[i] & clientMask))
                pids[i] = *xcb_res_client_id_value_value(entry.data);
        }
    }
    return pids;
}

/// The bits of a resource id that name the client which made it.
std::uint32_t clientMask(xcb_connection_t* connection) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    return setup == nullptr ? 0 : ~setup->resource_id_mask;
}

/// Client ids came with version 1.2 of X-Resource.
bool canAskForClientIds(xcb_connection_t* connection) {
    const auto* extension = xcb_get_extension_data(connection, &xcb_res_id);
    if (extension == nullptr || extension->present == 0)
        return false;
    const XcbOwned<xcb_res_query_version_reply_t> version(
        xcb_res_query_version_reply(connection, xcb_res_query_version(connection, 1, 2), nullptr));
    return version && (version->server_major > 1 || version->server_minor >= 2);
}

}  // namespace

bool pastesWithShiftInsert(const QByteArray& windowClass) {
    const QByteArray lower = windowClass.toLower();
    return std::any_of(TERMINAL_CLASSES.begin(), TERMINAL_CLASSES.end(),
                       [&](const char* terminal) { return lower == terminal; });
}

FocusX11::FocusX11(xcb_connection_t* connection)
    : m_connection(connection),
      m_root(rootWindow(connection)),
      m_clientMask(clientMask(connection)),
      m_netActiveWindow(internAtom(connection, "_NET_ACTIVE_WINDOW")),
      m_hasResourceExtension(canAskForClientIds(connection)) {}

FocusedWindow FocusX11::focused() const {
    const XcbOwned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    if (!reply)
        return {};
    const xcb_window_t focus = reply->focus;
    const bool isWindow =
        focus != XCB_INPUT_FOCUS_NONE && focus != XCB_INPUT_FOCUS_POINTER_ROOT && focus != m_root;
    FocusedWindow direct = isWindow ? withClass(focus) : FocusedWindow{};
    if (!direct.windowClass.isEmpty())
        return direct;
    if (const xcb_window_t active = activeWindow(); active != XCB_WINDOW_NONE)
        return withClass(active);
    if (isWindow || focus == XCB_INPUT_FOCUS_NONE)
        return direct;
    const xcb_window_t pointed = windowUnderPointer();
    return pointed == XCB_WINDOW_NONE ? FocusedWindow{} : withClass(pointed);
}

bool FocusX11::sameProgram(xcb_window_t one, xcb_window_t other) const {
    if (one == XCB_WINDOW_NONE || other == XCB_WINDOW_NONE ||
        xcb_connection_has_error(m_connection) != 0)
        return false;
    return (one & m_clientMask) == (other & m_clientMask) || sameProcess(one, other);
}

// The focus may lie on a child of the window that carries the class.
FocusedWindow FocusX11::withClass(xcb_window_t window) const {
    xcb_window_t candidate = window;
    for (int depth = 0; depth < DEEPEST_WINDOW_TREE; ++depth) {
        if (candidate == XCB_WINDOW_NONE || candidate == m_root)
            break;
        if (QByteArray windowClass = classOf(candidate); !windowClass.isEmpty())
            return {window, std::move(windowClass)};
        candidate = parentOf(candidate);
    }
    return {window, {}};
}

// WM_CLASS holds two strings, each ended by a NUL: instance, then class.
QByteArray FocusX11::classOf(xcb_window_t window) const {
    const auto cookie = xcb_get_property(m_connection, 0, window, XCB_ATOM_WM_CLASS,
                                         XCB_ATOM_STRING, 0, WM_CLASS_LONGS);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    const QByteArray value(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           xcb_get_property_value_length(reply.get()));
    const QList<QByteArray> parts = value.split('\0');
    return parts.size() > 1 ? parts[1] : parts.value(0);
}

xcb_window_t FocusX11::parentOf(xcb_window_t window) const {
    const XcbOwned<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, window), nullptr));
    return reply ? reply->parent : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t FocusX11::activeWindow() const {
    const auto cookie =
        xcb_get_property(m_connection, 0, m_root, m_netActiveWindow, XCB_ATOM_WINDOW, 0, 1);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4)
        return XCB_WINDOW_NONE;
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

// Down to the innermost window: above it a frame of the window manager may lie, without a class.
xcb_window_t FocusX11::windowUnderPointer() const {
    xcb_window_t deepest = XCB_WINDOW_NONE;
    xcb_window_t window = m_root;
    for (int depth = 0; depth < DEEPEST_WINDOW_TREE && window != XCB_WINDOW_NONE; ++depth) {
        const XcbOwned<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
            m_connection, xcb_query_pointer(m_connection, window), nullptr));
        window = reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
        if (window != XCB_WINDOW_NONE)
            deepest = window;
    }
    return deepest;
}

bool FocusX11::sameProcess(xcb_window_t one, xcb_window_t other) const {
    if (!m_hasResourceExtension)
        return false;
    const auto pids = processIds(m_connection, {one, other}, m_clientMask);
    return pids[0] != 0 && pids[0] == pids[1];
}

}  // namespace sayloft
