// SPDX-License-Identifier: MIT
#include "bench/FocusedWindow.h"

#include <xcb/xfixes.h>
#include <xcb/xtest.h>

#include <stdexcept>
#include <thread>

namespace sayloft::bench {

using namespace std::chrono_literals;

FocusedWindow::FocusedWindow() : m_connection(connectToXServer()) {
    if (!m_connection)
        throw std::runtime_error("no X server");
    m_clipboard = internAtom(m_connection.get(), "CLIPBOARD");
    m_utf8 = internAtom(m_connection.get(), "UTF8_STRING");
    m_window = xcb_generate_id(m_connection.get());
    const std::uint32_t events =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_EXPOSURE;
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_window,
                      rootWindow(m_connection.get()), 0, 0, 300, 200, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_map_window(m_connection.get(), m_window);
    watchClipboard();
    takeFocus();
}

void FocusedWindow::watchClipboard() {
    const auto* extension = xcb_get_extension_data(m_connection.get(), &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0)
        throw std::runtime_error("the X server has no XFIXES");
    m_ownerChanged =
        static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    // Requests only work once the server has been told which version is spoken.
    const XcbOwned<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        m_connection.get(), xcb_xfixes_query_version(m_connection.get(), 5, 0), nullptr));
    xcb_xfixes_select_selection_input(m_connection.get(), m_window, m_clipboard,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
}

void FocusedWindow::takeFocus() {
    const auto end = Clock::now() + 10s;
    while (Clock::now() < end) {
        xcb_set_input_focus(m_connection.get(), XCB_INPUT_FOCUS_PARENT, m_window, XCB_CURRENT_TIME);
        const XcbOwned<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
            m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
        if (reply && reply->focus == m_window)
            return;
        std::this_thread::sleep_for(5ms);
    }
    throw std::runtime_error("the window did not get the focus");
}

std::optional<FocusedWindow::Clock::time_point> FocusedWindow::waitForPasteKey(
    std::chrono::milliseconds deadline) {
    const auto end = Clock::now() + deadline;
    while (Clock::now() < end) {
        const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (!event) {
            std::this_thread::sleep_for(100us);
            continue;
        }
        const auto type = static_cast<std::uint8_t>(event->response_type & 0x7FU);
        if (type == m_ownerChanged)
            m_clipboardTaken = Clock::now();
        if (type != XCB_KEY_PRESS)
            continue;
        const auto* key = reinterpret_cast<const xcb_key_press_event_t*>(event.get());
        if (key->detail != Keycode::v || (key->state & XCB_MOD_MASK_CONTROL) == 0)
            continue;
        const auto arrived = Clock::now();
        readClipboard(key->time);
        return arrived;
    }
    return std::nullopt;
}

void FocusedWindow::readClipboard(xcb_timestamp_t time) {
    xcb_convert_selection(m_connection.get(), m_window, m_clipboard, m_utf8, m_utf8, time);
    xcb_flush(m_connection.get());
}

void FocusedWindow::press(xcb_keycode_t keycode) {
    fakeKey(XCB_KEY_PRESS, keycode);
}

void FocusedWindow::release(xcb_keycode_t keycode) {
    fakeKey(XCB_KEY_RELEASE, keycode);
}

void FocusedWindow::fakeKey(std::uint8_t type, xcb_keycode_t keycode) {
    xcb_test_fake_input(m_connection.get(), type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    xcb_flush(m_connection.get());
}

}  // namespace sayloft::bench
