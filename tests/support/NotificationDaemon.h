// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/XServer.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

/// Notification daemons of other people.
enum class Notifying { dunst, xfce };

[[nodiscard]] const char* nameOf(Notifying daemon);
[[nodiscard]] QString programOf(Notifying daemon);

/// A notification daemon that owns its name on the bus when the constructor returns.
class NotificationDaemon {
public:
    NotificationDaemon(Notifying daemon, const XServer& server, const SessionBus& bus);

    /// What is on the screen: the windows of the daemon, one for each notification; dunst has one
    /// for all.
    [[nodiscard]] QStringList windows() const;
    [[nodiscard]] bool shows() const { return !windows().isEmpty(); }

    /// As a user does who clicks on the notification.
    void click() const;

    [[nodiscard]] ChildProgram& program() { return *m_program; }
    [[nodiscard]] const QProcessEnvironment& environment() const { return m_environment; }

    /// Ends the daemon without a farewell.
    void kill();

private:
    Notifying m_daemon;
    const XServer& m_server;
    QTemporaryDir m_home;
    QProcessEnvironment m_environment;
    std::unique_ptr<ChildProgram> m_program;
};

}  // namespace sayloft::test
