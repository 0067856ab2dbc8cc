// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdint>

namespace sayloft {

/// The window that keys go to.
struct FocusedWindow {
    xcb_window_t window = XCB_WINDOW_NONE;  ///< none: no window has the focus
    QByteArray windowClass;                 ///< class part of WM_CLASS; empty when there is none
};

/// Whether windows of this class paste PRIMARY with Shift+Insert and take Control+V for something
/// else, as terminals do and editors with key bindings of their own. Case does not count.
[[nodiscard]] bool pastesWithShiftInsert(const QByteArray& windowClass);

/// Answers who has the keyboard focus, over a connection that must outlive it. Every call is a few
/// round trips to the X server; any one thread. Selects no events.
class FocusX11 {
public:
    explicit FocusX11(xcb_connection_t* connection);

    /// The window with the input focus. Where the focus follows the pointer, lies on the root
    /// window or on a window that belongs to no application, the window that the window manager
    /// calls active, else the one under the pointer.
    [[nodiscard]] FocusedWindow focused() const;

    /// Whether two windows belong to one program: to the same X client, or to clients of the same
    /// process (some programs read the clipboard on a second connection). False for XCB_NONE.
    [[nodiscard]] bool sameProgram(xcb_window_t one, xcb_window_t other) const;

private:
    [[nodiscard]] FocusedWindow withClass(xcb_window_t window) const;
    [[nodiscard]] QByteArray classOf(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t parentOf(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t activeWindow() const;
    [[nodiscard]] xcb_window_t windowUnderPointer() const;
    [[nodiscard]] bool sameProcess(xcb_window_t one, xcb_window_t other) const;

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    std::uint32_t m_clientMask;
    xcb_atom_t m_netActiveWindow;
    bool m_hasResourceExtension;
};

}  // namespace sayloft
