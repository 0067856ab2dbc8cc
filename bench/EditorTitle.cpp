// SPDX-License-Identifier: MIT
#include "bench/EditorTitle.h"

#include <cstring>
#include <stdexcept>

#include <poll.h>

namespace sayloft::bench {

using namespace std::chrono_literals;

EditorTitle::EditorTitle() : m_connection(connectToXServer()) {
    if (!m_connection)
        throw std::runtime_error("no X server");
    const QByteArray active = property(rootWindow(m_connection.get()), "_NET_ACTIVE_WINDOW");
    if (active.size() < static_cast<qsizetype>(sizeof m_window))
        throw std::runtime_error("no window is active");
    std::memcpy(&m_window, active.constData(), sizeof m_window);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection.get(), m_window, XCB_CW_EVENT_MASK, &events);
    waitUntilSaved();
}

EditorTitle::Clock::time_point EditorTitle::waitFor(bool modified) const {
    const auto end = Clock::now() + 60s;
    while (true) {
        const auto now = Clock::now();
        const QByteArray title = property(m_window, "_NET_WM_NAME");
        if (!title.isEmpty() && title.startsWith('*') == modified)
            return now;
        waitForChange(end);
    }
}

void EditorTitle::waitForChange(Clock::time_point end) const {
    pollfd socket{
        .fd = xcb_get_file_descriptor(m_connection.get()), .events = POLLIN, .revents = 0};
    while (true) {
        const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (event)
            return;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        if (left <= 0ms || ::poll(&socket, 1, static_cast<int>(left.count())) != 1)
            throw std::runtime_error("the editor's title stays as it is");
    }
}

QByteArray EditorTitle::property(xcb_window_t window, const char* name) const {
    constexpr std::uint32_t longest = 1024;
    const xcb_atom_t atom = internAtom(m_connection.get(), name);
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_connection.get(),
        xcb_get_property(m_connection.get(), 0, window, atom, XCB_ATOM_ANY, 0, longest), nullptr));
    if (!reply)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

}  // namespace sayloft::bench
