// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionInboxX11.h"

#include "platform/linux/SelectionWindowX11.h"

#include <utility>

namespace sayloft {
namespace {

// The server keeps names for ever, so they are used again; late answers are not that late.
constexpr int propertyCount = 8;

}  // namespace

SelectionInboxX11::SelectionInboxX11(xcb_connection_t* connection, AtomsX11& atoms)
    : m_connection(connection), m_atoms(atoms), m_window(createSelectionWindow(connection)) {}

SelectionInboxX11::~SelectionInboxX11() {
    xcb_destroy_window(m_connection, m_window);
}

xcb_atom_t SelectionInboxX11::open() {
    close();
    m_property =
        m_atoms.atom("SAYLOFT_SELECTION_" + QByteArray::number(m_openings++ % propertyCount));
    xcb_delete_property(m_connection, m_window, m_property);
    return m_property;
}

// An answer may be there already; who sends piece by piece waits until it is taken away.
void SelectionInboxX11::close() {
    if (const xcb_atom_t closed = std::exchange(m_property, XCB_ATOM_NONE))
        xcb_delete_property(m_connection, m_window, closed);
    xcb_flush(m_connection);
}

void SelectionInboxX11::handle(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    const bool isLateAnswer = change.window == m_window && change.atom != m_property &&
                              change.state == XCB_PROPERTY_NEW_VALUE;
    if (!isLateAnswer)
        return;
    xcb_delete_property(m_connection, m_window, change.atom);
    xcb_flush(m_connection);
}

}  // namespace sayloft
