// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AtomsX11.h"

#include <xcb/xcb.h>

namespace sayloft {

/// Where other programs put what they are asked for. The window lives as long as the inbox: many
/// programs end, and take the clipboard with them, when a window that has asked them is gone by the
/// time they answer. On the selection thread.
class SelectionInboxX11 {
public:
    /// Both must outlive it.
    SelectionInboxX11(xcb_connection_t* connection, AtomsX11& atoms);
    ~SelectionInboxX11();
    SelectionInboxX11(const SelectionInboxX11&) = delete;
    SelectionInboxX11& operator=(const SelectionInboxX11&) = delete;

    [[nodiscard]] xcb_window_t window() const { return m_window; }

    /// A property for one reading's answers. The one before is closed.
    [[nodiscard]] xcb_atom_t open();

    /// What comes from now on is nobody's.
    void close();

    /// Throws away the answers to readings that have been given up, so that their senders come to
    /// an end.
    void handle(const xcb_generic_event_t& event);

private:
    xcb_connection_t* m_connection;
    AtomsX11& m_atoms;
    xcb_window_t m_window;
    xcb_atom_t m_property = XCB_ATOM_NONE;
    int m_openings = 0;
};

}  // namespace sayloft
