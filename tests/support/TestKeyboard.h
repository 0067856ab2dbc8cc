// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"

#include <QString>

#include <cstdint>
#include <set>

namespace sayloft::test {

/// The user's hands on the keyboard of the X server that DISPLAY names: presses keys over a
/// connection of its own. Keys that are still down are let go by the destructor.
class TestKeyboard {
public:
    /// Key codes of a PC keyboard, which the layout does not change.
    enum Key : std::uint8_t {
        escape = 9,
        backspace = 22,
        tab = 23,
        w = 25,
        returnKey = 36,
        controlLeft = 37,
        a = 38,
        s = 39,
        shiftLeft = 50,
        v = 55,
        shiftRight = 62,
        altLeft = 64,
        space = 65,
        capsLock = 66,
        f4 = 70,
        numLock = 77,
        controlRight = 105,
        altRight = 108,
        home = 110,
        end = 115,
        down = 116,
        insert = 118,
        superLeft = 133,
        superRight = 134,
    };

    TestKeyboard();
    ~TestKeyboard();
    TestKeyboard(const TestKeyboard&) = delete;
    TestKeyboard& operator=(const TestKeyboard&) = delete;

    /// Each returns when the server has done it.
    void press(Key key);
    void release(Key key);
    void tap(Key key);
    /// `key` while `modifier` is held.
    void tapWith(Key modifier, Key key);
    /// Latin text, on the keys that the first layout has it on.
    void type(const QString& text);

    /// Layouts as setxkbmap takes them, for example "ru,us", and which of them is active (from 0).
    void setLayouts(const QString& layouts, std::uint8_t active = 0);
    void setOption(const QString& option);

    /// Modifiers as masks of the server's eight: keys down, and switched on.
    [[nodiscard]] std::uint8_t heldModifiers() const;
    [[nodiscard]] std::uint8_t lockedModifiers() const;
    [[nodiscard]] std::uint8_t latchedModifiers() const;
    [[nodiscard]] std::uint8_t activeLayout() const;
    /// Switches modifiers on for the next key, or until they are switched off, as sticky keys do.
    void latch(std::uint8_t modifiers);
    void lock(std::uint8_t modifiers);

    /// Lets gestures on the keyboard itself switch its help for the disabled on and off: Shift that
    /// is held for eight seconds does so with slow keys.
    void enableAccessXKeys();
    /// With slow keys on, a key counts only after it has been down for 0.3 s.
    void enableSlowKeys();
    [[nodiscard]] bool hasSlowKeys() const;

private:
    void typeSign(std::uint32_t sign);
    void fake(std::uint8_t type, Key key);
    void setGroup(std::uint8_t group);
    void enable(std::uint32_t controls);

    XcbConnection m_connection;
    std::set<Key> m_down;
};

}  // namespace sayloft::test
