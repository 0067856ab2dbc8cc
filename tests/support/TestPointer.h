// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"

#include <QPoint>

#include <cstdint>

namespace sayloft::test {

/// The user's hand on the mouse of the X server that DISPLAY names.
class TestPointer {
public:
    TestPointer();

    /// Moves to the place on the screen, then presses and releases the left button. Returns when
    /// the server has done it.
    void click(QPoint place);
    void moveTo(QPoint place);

private:
    void fake(std::uint8_t type, std::uint8_t detail, QPoint place);

    XcbConnection m_connection;
};

}  // namespace sayloft::test
