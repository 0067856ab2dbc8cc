// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/PulseHandles.h"

#include <chrono>
#include <functional>

namespace sayloft {

/// A one-shot timer on a mainloop's thread. Created, set and destroyed with the mainloop's lock
/// held; may be set and stopped, but not destroyed, from within its own call.
class PulseTimer {
public:
    PulseTimer(pa_threaded_mainloop* mainloop, std::function<void()> call);
    ~PulseTimer() { stop(); }
    PulseTimer(const PulseTimer&) = delete;
    PulseTimer& operator=(const PulseTimer&) = delete;

    /// Calls once after `delay`, and no longer at an earlier time that was set. `context` is any
    /// context of the mainloop.
    void start(pa_context* context, std::chrono::milliseconds delay);
    void stop();

private:
    static void onTime(pa_mainloop_api* api, pa_time_event* event, const timeval* time, void* self);

    pa_mainloop_api* m_api;
    std::function<void()> m_call;
    pa_time_event* m_event = nullptr;
};

}  // namespace sayloft
