// SPDX-License-Identifier: MIT
#pragma once

#include <pulse/pulseaudio.h>

#include <memory>

namespace sayloft {

struct PulseMainloopFree {
    void operator()(pa_threaded_mainloop* mainloop) const { pa_threaded_mainloop_free(mainloop); }
};
using PulseMainloop = std::unique_ptr<pa_threaded_mainloop, PulseMainloopFree>;

/// Holds the mainloop's lock, which its thread gives up only while it polls. Never to be taken on
/// that thread, whose callbacks hold it already.
class PulseLock {
public:
    explicit PulseLock(pa_threaded_mainloop* mainloop) : m_mainloop(mainloop) {
        pa_threaded_mainloop_lock(m_mainloop);
    }
    ~PulseLock() { pa_threaded_mainloop_unlock(m_mainloop); }
    PulseLock(const PulseLock&) = delete;
    PulseLock& operator=(const PulseLock&) = delete;

private:
    pa_threaded_mainloop* m_mainloop;
};

/// A context or stream calls back into its owner until the callbacks are taken away, and lives on
/// for as long as the library itself still holds it; so they are taken away first.
struct PulseContextEnd {
    void operator()(pa_context* context) const {
        pa_context_set_state_callback(context, nullptr, nullptr);
        pa_context_set_subscribe_callback(context, nullptr, nullptr);
        pa_context_disconnect(context);
        pa_context_unref(context);
    }
};
/// To be ended with the mainloop's lock held.
using PulseContext = std::unique_ptr<pa_context, PulseContextEnd>;

struct PulseStreamEnd {
    void operator()(pa_stream* stream) const {
        pa_stream_set_read_callback(stream, nullptr, nullptr);
        pa_stream_set_write_callback(stream, nullptr, nullptr);
        pa_stream_set_moved_callback(stream, nullptr, nullptr);
        pa_stream_set_suspended_callback(stream, nullptr, nullptr);
        pa_stream_set_state_callback(stream, &endOnceMade, nullptr);
        endOnceMade(stream, nullptr);
    }

private:
    // Nothing ends a stream of which the server has not yet said that it is there: it would be
    // there afterwards, and a microphone open, for as long as the program runs.
    static void endOnceMade(pa_stream* stream, void* /*nobody*/) {
        if (pa_stream_get_state(stream) == PA_STREAM_CREATING)
            return;
        pa_stream_set_state_callback(stream, nullptr, nullptr);
        pa_stream_disconnect(stream);
        pa_stream_unref(stream);
    }
};
/// To be ended with the mainloop's lock held.
using PulseStream = std::unique_ptr<pa_stream, PulseStreamEnd>;

struct PulseOperationUnref {
    void operator()(pa_operation* operation) const { pa_operation_unref(operation); }
};
/// Letting it go does not cancel the operation.
using PulseOperation = std::unique_ptr<pa_operation, PulseOperationUnref>;

struct PulsePropertiesFree {
    void operator()(pa_proplist* properties) const { pa_proplist_free(properties); }
};
using PulseProperties = std::unique_ptr<pa_proplist, PulsePropertiesFree>;

}  // namespace sayloft
