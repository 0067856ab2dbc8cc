// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"

#include <xcb/xcb.h>

#include <QByteArray>

#include <chrono>

namespace sayloft::bench {

/// The title of an editor's window, which tells by an asterisk that the document is not as it was
/// saved. So nobody has to ask the editor whether a text has arrived. Functions throw
/// std::runtime_error when what they wait for does not come.
class EditorTitle {
public:
    using Clock = std::chrono::steady_clock;

    /// Of the window that is active now.
    EditorTitle();

    /// When the title said it.
    [[nodiscard]] Clock::time_point waitUntilModified() const { return waitFor(true); }
    void waitUntilSaved() const { static_cast<void>(waitFor(false)); }

private:
    [[nodiscard]] Clock::time_point waitFor(bool modified) const;
    void waitForChange(Clock::time_point end) const;
    [[nodiscard]] QByteArray property(xcb_window_t window, const char* name) const;

    XcbConnection m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
};

}  // namespace sayloft::bench
