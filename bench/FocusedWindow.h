// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <optional>

namespace sayloft::bench {

/// A window that has the keyboard focus and tells when a paste key reaches it. It reads the
/// clipboard as any target does, so that whoever pastes sees its text taken.
class FocusedWindow {
public:
    using Clock = std::chrono::steady_clock;

    /// Throws std::runtime_error when there is no X server.
    FocusedWindow();

    /// When Control+V arrived; none after `deadline`. Keys that arrived before this call count too.
    [[nodiscard]] std::optional<Clock::time_point> waitForPasteKey(
        std::chrono::milliseconds deadline);

    /// When the clipboard got the owner that it had as the last paste key arrived.
    [[nodiscard]] Clock::time_point clipboardTaken() const { return m_clipboardTaken; }

    /// Presses or releases the key with this keycode, as a keyboard does.
    void press(xcb_keycode_t keycode);
    void release(xcb_keycode_t keycode);

private:
    void watchClipboard();
    void takeFocus();
    void fakeKey(std::uint8_t type, xcb_keycode_t keycode);
    void readClipboard(xcb_timestamp_t time);

    XcbConnection m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_atom_t m_clipboard = XCB_ATOM_NONE;
    xcb_atom_t m_utf8 = XCB_ATOM_NONE;
    std::uint8_t m_ownerChanged = 0;  ///< type of the event
    Clock::time_point m_clipboardTaken;
};

/// Keycodes of a keyboard with the evdev map, which every current X server has.
namespace Keycode {
inline constexpr xcb_keycode_t v = 55;
inline constexpr xcb_keycode_t shiftLeft = 50;
inline constexpr xcb_keycode_t superLeft = 133;
}  // namespace Keycode

}  // namespace sayloft::bench
