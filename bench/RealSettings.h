// SPDX-License-Identifier: MIT
#pragma once

#include "app/AppDelegate.h"
#include "platform/SessionBusConnection.h"
#include "tests/support/SessionBus.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TempHome.h"

#include <QByteArray>

#include <memory>

namespace sayloft::bench {

/// The controller over the services that the program has: its configuration and models on the disk,
/// the microphones of a sound server, a session bus. Nothing has been started, so no helper runs.
class RealSettings {
public:
    /// Beside the microphone of the laptop there are this many more. Throws std::runtime_error when
    /// the program does not see them.
    explicit RealSettings(int headsets);

    [[nodiscard]] AppDelegate& app() { return *m_app; }

private:
    void plugIn(int headsets) const;

    const test::TempHome m_home;
    const test::SoundServer m_room;
    const test::SessionBus m_bus;
    SessionBusConnection m_connection{m_bus.address()};
    std::unique_ptr<AppDelegate> m_app;
};

}  // namespace sayloft::bench
