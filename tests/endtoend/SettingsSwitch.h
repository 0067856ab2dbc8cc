// SPDX-License-Identifier: MIT
#pragma once

#include "tests/endtoend/DictationDesk.h"
#include "tests/support/AccessibilityBus.h"
#include "tests/support/AccessibleTree.h"
#include "tests/support/TrayClient.h"

#include <QString>

namespace sayloft::test {

/// The settings window of the program on a desk, operated by assistive technology. To be made
/// before the program is started.
class SettingsSwitch {
public:
    static inline const QString window = QStringLiteral("Sayloft Settings");
    /// On in the defaults, so that the settings become longer when it is switched off.
    static inline const QString boost = QStringLiteral("Boost quiet microphone");
    static inline const QString login = QStringLiteral("Launch Sayloft at login");

    explicit SettingsSwitch(DictationDesk& desk)
        : m_desk(desk), m_tray(desk.bus()), m_accessibility(desk.bus()) {}

    /// From the menu of the tray item.
    void open() const {
        m_tray.click(QStringLiteral("Settings…"));
        static_cast<void>(m_windows.window(window));
    }
    /// With its key, so that the keyboard goes to where it was before.
    void close() const {
        m_desk.keyboard().tapWith(TestKeyboard::controlLeft, TestKeyboard::w);
        m_windows.waitUntilGone(window);
    }
    void press(const QString& title) const { m_windows.press(window, title); }
    /// Of a host that a test has offered it from.
    void downloadEnglish() const {
        press(QStringLiteral("Download English only (v2) — best for English"));
    }
    [[nodiscard]] bool isOn(const QString& title) const {
        return m_windows.control(window, title).is(AccessibleObject::State::checked);
    }

    [[nodiscard]] const AccessibleTree& windows() const { return m_windows; }

private:
    DictationDesk& m_desk;
    TrayClient m_tray;
    AccessibilityBus m_accessibility;
    AccessibleTree m_windows{m_accessibility};
};

}  // namespace sayloft::test
