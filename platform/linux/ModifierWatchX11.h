// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ModifierWatch.h"
#include "platform/linux/ModifierFlagsX11.h"
#include "platform/linux/XcbHandles.h"
#include "platform/linux/XkbState.h"

#include <QSocketNotifier>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace sayloft {

/// Watches the X server's base modifiers, the ones whose keys are physically down, over a
/// connection of its own. Only state notifications are selected: keys are neither grabbed nor seen.
/// When the server goes away, held keys count as released and the watch tries to come back.
class ModifierWatchX11 : public ModifierWatch {
public:
    ModifierWatchX11();

    /// False without an X server that has the XKB extension. A second call replaces the receiver.
    /// Keys already held are reported before this returns.
    [[nodiscard]] bool start(FlagsChanged flagsChanged) override;

    /// Changes that came before the call are reported first, so the receiver may run within it.
    void beginInjection() override;
    /// Everything that the server has done so far is skipped, then the held state is compared with
    /// the last report. Pairs may be nested; only the outermost counts.
    void endInjection() override;

private:
    enum class EventKind { state, map, other };

    [[nodiscard]] bool connect();
    [[nodiscard]] bool listen(xcb_connection_t* connection);
    [[nodiscard]] bool readKeyMap(xcb_connection_t* connection);
    void readEvents();
    void handle(const xcb_generic_event_t& event);
    [[nodiscard]] EventKind kindOf(const xcb_generic_event_t& event) const;
    void catchUp();
    [[nodiscard]] std::vector<std::uint8_t> skipUntil(const XkbState& state);
    void report(std::uint8_t held);
    void lost();
    void reconnect();

    FlagsChanged m_flagsChanged;
    std::uint8_t m_lastHeld = 0;  ///< as the server numbers its modifiers
    std::uint64_t m_lastReport = 0;
    int m_injections = 0;
    XcbConnection m_connection;
    std::uint8_t m_firstXkbEvent = 0;
    std::optional<ModifierFlagsX11> m_modifierFlags;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_reconnectTimer;
};

}  // namespace sayloft
