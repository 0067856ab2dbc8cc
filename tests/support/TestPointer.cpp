// SPDX-License-Identifier: MIT
#include "tests/support/TestPointer.h"

#include <xcb/xtest.h>

#include <stdexcept>

namespace sayloft::test {
namespace {

constexpr std::uint8_t absolute = 0;
constexpr std::uint8_t leftButton = 1;

}  // namespace

TestPointer::TestPointer() : m_connection(connectToXServer()) {
    if (!m_connection)
        throw std::runtime_error("no X server for the mouse");
}

void TestPointer::click(QPoint place) {
    fake(XCB_MOTION_NOTIFY, absolute, place);
    fake(XCB_BUTTON_PRESS, leftButton, {});
    fake(XCB_BUTTON_RELEASE, leftButton, {});
    const XcbOwned<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(
        m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
}

void TestPointer::moveTo(QPoint place) {
    fake(XCB_MOTION_NOTIFY, absolute, place);
    xcb_flush(m_connection.get());
}

void TestPointer::fake(std::uint8_t type, std::uint8_t detail, QPoint place) {
    xcb_test_fake_input(m_connection.get(), type, detail, XCB_CURRENT_TIME,
                        rootWindow(m_connection.get()), static_cast<std::int16_t>(place.x()),
                        static_cast<std::int16_t>(place.y()), 0);
}

}  // namespace sayloft::test
