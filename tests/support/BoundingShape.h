// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/qwindowdefs.h>
#include <QRegion>

#include <xcb/xcb.h>

namespace sayloft::test {

/// What of the window is on the screen, in pixels from its top left.
[[nodiscard]] QRegion boundingShape(xcb_connection_t* connection, WId window);

}  // namespace sayloft::test
