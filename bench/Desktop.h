// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/SessionBus.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace sayloft::bench {

/// A private desktop with a window manager, a session bus and a microphone, and a new user on it
/// who has chosen the starter model.
class Desktop {
public:
    Desktop();

    [[nodiscard]] QProcessEnvironment environment() const;
    [[nodiscard]] QString home() const { return path(QStringLiteral("home")); }
    [[nodiscard]] const test::XServer& display() const { return m_server; }
    [[nodiscard]] const test::SessionBus& bus() const { return m_bus; }
    [[nodiscard]] const test::SoundServer& room() const { return m_soundServer; }
    /// A place for `name` that goes with the desktop.
    [[nodiscard]] QString path(const QString& name) const { return m_directory.filePath(name); }

private:
    QTemporaryDir m_directory;
    test::XServer m_server;
    test::WindowManager m_windowManager{m_server};
    test::SoundServer m_soundServer;
    test::SessionBus m_bus;
};

}  // namespace sayloft::bench
