// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"

#include <QByteArray>

#include <cstdint>
#include <vector>

namespace sayloft::test {

/// A window that has the keyboard focus, without a window manager, and remembers the keys it gets.
class KeyWindow {
public:
    struct KeyEvent {
        enum Kind { press, release } kind;
        std::uint8_t key;
        std::uint16_t modifiers;  ///< state before the event, layouts left out

        bool operator==(const KeyEvent&) const = default;
    };

    explicit KeyWindow(const QByteArray& windowClass = "KeyWindow");

    /// Every key event so far.
    [[nodiscard]] const std::vector<KeyEvent>& events();
    /// Forgets them.
    void clear();

private:
    void create();
    void setClass(const QByteArray& windowClass);
    void takeFocus();

    XcbConnection m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    std::vector<KeyEvent> m_events;
};

}  // namespace sayloft::test
