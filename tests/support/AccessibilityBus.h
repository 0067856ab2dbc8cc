// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"

#include <QDBusConnection>
#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

/// AT-SPI beside a session bus, switched on as a screen reader does it: programs of the session
/// that start afterwards let themselves be looked at and operated. Needs an X server.
class AccessibilityBus {
public:
    explicit AccessibilityBus(const SessionBus& session);
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    [[nodiscard]] const QDBusConnection& connection() const { return m_connection; }

private:
    [[nodiscard]] QString address() const;
    void switchOn() const;

    QTemporaryDir m_directory;
    QDBusConnection m_session{QString()};
    std::unique_ptr<ChildProgram> m_launcher;
    QDBusConnection m_connection{QString()};
};

}  // namespace sayloft::test
