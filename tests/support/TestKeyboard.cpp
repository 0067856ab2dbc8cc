// SPDX-License-Identifier: MIT
#include "tests/support/TestKeyboard.h"

#include "platform/linux/XcbXkb.h"
#include "platform/linux/XkbState.h"
#include "tests/support/ChildProgram.h"

#include <xcb/xcbext.h>
#include <xcb/xtest.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

#include <sys/uio.h>

namespace sayloft::test {
namespace {

void waitForServer(xcb_connection_t* connection) {
    const XcbOwned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

XkbState stateOf(xcb_connection_t* connection) {
    return readXkbState(connection).value_or(XkbState{});
}

// WORKAROUND: libxcb 1.15 has no parameter for the value of the latches, so the request is written
// out by hand.
void latchModifiers(xcb_connection_t* connection, std::uint8_t modifiers) {
    xcb_xkb_latch_lock_state_request_t request{};
    request.deviceSpec = XCB_XKB_ID_USE_CORE_KBD;
    request.affectModLatches = modifiers;
    request.pad0 = modifiers;
    // libxcb uses the two elements before the one that it is given.
    std::array<iovec, 3> parts{};
    parts[2] = {&request, sizeof request};
    const xcb_protocol_request_t description{
        .count = 1, .ext = &xcb_xkb_id, .opcode = XCB_XKB_LATCH_LOCK_STATE, .isvoid = 1};
    xcb_send_request(connection, 0, &parts[2], &description);
}

}  // namespace

TestKeyboard::TestKeyboard() : m_connection(connectToXServer()) {
    if (!m_connection || !useXkb(m_connection.get()))
        throw std::runtime_error("no X server with XKB for the keyboard");
}

TestKeyboard::~TestKeyboard() {
    while (!m_down.empty() && xcb_connection_has_error(m_connection.get()) == 0)
        release(*m_down.begin());
}

void TestKeyboard::press(Key key) {
    fake(XCB_KEY_PRESS, key);
    m_down.insert(key);
}

void TestKeyboard::release(Key key) {
    fake(XCB_KEY_RELEASE, key);
    m_down.erase(key);
}

void TestKeyboard::tap(Key key) {
    press(key);
    release(key);
}

void TestKeyboard::tapWith(Key modifier, Key key) {
    press(modifier);
    tap(key);
    release(modifier);
}

void TestKeyboard::type(const QString& text) {
    for (const QChar sign : text)
        typeSign(sign == QLatin1Char('\n') ? XKB_KEY_Return : sign.unicode());
}

void TestKeyboard::typeSign(std::uint32_t sign) {
    const xcb_setup_t& setup = *xcb_get_setup(m_connection.get());
    const auto count = static_cast<std::uint8_t>(setup.max_keycode - setup.min_keycode + 1);
    const XcbOwned<xcb_get_keyboard_mapping_reply_t> map(xcb_get_keyboard_mapping_reply(
        m_connection.get(), xcb_get_keyboard_mapping(m_connection.get(), setup.min_keycode, count),
        nullptr));
    // Of Latin signs the keysym is the code point. The first two of a key are without and with
    // Shift.
    for (int key = 0; map && key < count; ++key) {
        const xcb_keysym_t* const signs = xcb_get_keyboard_mapping_keysyms(map.get()) +
                                          std::ptrdiff_t{key} * map->keysyms_per_keycode;
        const auto code = static_cast<Key>(setup.min_keycode + key);
        if (signs[0] == sign)
            return tap(code);
        if (signs[1] == sign)
            return tapWith(shiftLeft, code);
    }
    throw std::runtime_error("no key has the sign " + std::to_string(sign));
}

void TestKeyboard::setLayouts(const QString& layouts, std::uint8_t active) {
    run(QStringLiteral("setxkbmap"), {QStringLiteral("-layout"), layouts});
    setGroup(active);
}

void TestKeyboard::setOption(const QString& option) {
    run(QStringLiteral("setxkbmap"), {QStringLiteral("-option"), option});
}

std::uint8_t TestKeyboard::heldModifiers() const {
    return stateOf(m_connection.get()).base;
}

std::uint8_t TestKeyboard::lockedModifiers() const {
    return stateOf(m_connection.get()).locked;
}

std::uint8_t TestKeyboard::latchedModifiers() const {
    return stateOf(m_connection.get()).latched;
}

std::uint8_t TestKeyboard::activeLayout() const {
    return stateOf(m_connection.get()).group;
}

void TestKeyboard::latch(std::uint8_t modifiers) {
    latchModifiers(m_connection.get(), modifiers);
    waitForServer(m_connection.get());
}

void TestKeyboard::lock(std::uint8_t modifiers) {
    xcb_xkb_latch_lock_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0xff, modifiers, 0, 0, 0,
                             0, 0);
    waitForServer(m_connection.get());
}

void TestKeyboard::enableAccessXKeys() {
    enable(XCB_XKB_BOOL_CTRL_ACCESS_X_KEYS);
}

void TestKeyboard::enableSlowKeys() {
    enable(XCB_XKB_BOOL_CTRL_SLOW_KEYS);
}

bool TestKeyboard::hasSlowKeys() const {
    const XcbOwned<xcb_xkb_get_controls_reply_t> reply(xcb_xkb_get_controls_reply(
        m_connection.get(), xcb_xkb_get_controls(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD),
        nullptr));
    return reply && (reply->enabledControls & XCB_XKB_BOOL_CTRL_SLOW_KEYS) != 0;
}

void TestKeyboard::enable(std::uint32_t controls) {
    // Of all the values only those are changed that changeControls names.
    constexpr std::array<std::uint8_t, 32> repeatingKeys{};
    xcb_xkb_set_controls(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                         0, controls, controls, XCB_XKB_CONTROL_CONTROLS_ENABLED, 0, 0, 0, 0, 0, 0,
                         0, 0, 0, 0, 0, 0, 0, 0, repeatingKeys.data());
    waitForServer(m_connection.get());
}

void TestKeyboard::setGroup(std::uint8_t group) {
    xcb_xkb_latch_lock_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    waitForServer(m_connection.get());
}

void TestKeyboard::fake(std::uint8_t type, Key key) {
    xcb_test_fake_input(m_connection.get(), type, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    waitForServer(m_connection.get());
}

}  // namespace sayloft::test
