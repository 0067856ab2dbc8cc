// SPDX-License-Identifier: MIT
#include "tests/support/KeyWindow.h"

#include "tests/support/WaitUntil.h"

#include <stdexcept>

namespace sayloft::test {
namespace {

constexpr std::uint16_t modifierBits = 0xff;

xcb_window_t focusedWindow(xcb_connection_t* connection) {
    const XcbOwned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace

KeyWindow::KeyWindow(const QByteArray& windowClass) : m_connection(connectToXServer()) {
    if (!m_connection)
        throw std::runtime_error("no X server for the window");
    create();
    setClass(windowClass);
    takeFocus();
}

void KeyWindow::create() {
    constexpr std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
    m_window = xcb_generate_id(m_connection.get());
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window,
                      rootWindow(m_connection.get()), 0, 0, 100, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
}

void KeyWindow::setClass(const QByteArray& windowClass) {
    const QByteArray value = windowClass.toLower() + '\0' + windowClass + '\0';
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(value.size()),
                        value.constData());
}

void KeyWindow::takeFocus() {
    xcb_map_window(m_connection.get(), m_window);
    const bool focused = waitUntil([this] {
        xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
        return focusedWindow(m_connection.get()) == m_window;
    });
    if (!focused)
        throw std::runtime_error("the window did not get the focus");
}

const std::vector<KeyWindow::KeyEvent>& KeyWindow::events() {
    static_cast<void>(focusedWindow(m_connection.get()));
    while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        const auto type = event->response_type & 0x7fU;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
            continue;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        m_events.push_back({type == XCB_KEY_PRESS ? KeyEvent::press : KeyEvent::release, key.detail,
                            static_cast<std::uint16_t>(key.state & modifierBits)});
    }
    return m_events;
}

void KeyWindow::clear() {
    static_cast<void>(events());
    m_events.clear();
}

}  // namespace sayloft::test
