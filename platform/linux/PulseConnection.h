// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/PulseHandles.h"
#include "platform/linux/PulseTimer.h"

#include <functional>
#include <optional>

namespace sayloft {

/// One lasting connection to the sound server. After it is lost, or refused, a new one is tried
/// every 500 ms. Public functions are for the main thread unless they say otherwise, and none waits
/// for the server.
class PulseConnection {
public:
    enum class State {
        waiting,  ///< no answer yet, or no server
        ready,
        denied  ///< the server does not let us in
    };

    /// Called with the mainloop's lock held, on its thread or from within `close`.
    struct Events {
        std::function<void(pa_context*)> ready;
        std::function<void()> lost;  ///< also after an attempt that failed, and at `close`
    };

    PulseConnection() = default;
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    /// To be called once. Without a sound library that starts, the state stays `waiting`.
    void open(Events events);

    /// Ends the mainloop's thread: no callback comes afterwards.
    void close();

    [[nodiscard]] State state() const;

    /// The mainloop; null when it could not be started or is closed.
    [[nodiscard]] pa_threaded_mainloop* mainloop() const { return m_mainloop.get(); }
    /// The context while the state is `ready`, else null. With the lock held, any thread.
    [[nodiscard]] pa_context* context() const;

private:
    static void onState(pa_context* context, void* self);

    void connect();
    void stateChanged(pa_context_state_t state);
    void reconnect();
    void endContext();

    Events m_events;
    PulseMainloop m_mainloop;
    // Everything below is protected by the mainloop's lock.
    PulseContext m_context;
    std::optional<PulseTimer> m_retry;
    State m_state = State::waiting;
};

}  // namespace sayloft
