// SPDX-License-Identifier: MIT
#include "platform/linux/PulseConnection.h"

#include <utility>

namespace sayloft {
namespace {

constexpr std::chrono::milliseconds retryInterval{500};

PulseProperties clientProperties() {
    PulseProperties properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Sayloft");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, "org.sayloft.Sayloft");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, "sayloft");
    return properties;
}

}  // namespace

PulseConnection::~PulseConnection() {
    close();
}

void PulseConnection::open(Events events) {
    m_events = std::move(events);
    m_mainloop.reset(pa_threaded_mainloop_new());
    if (!m_mainloop)
        return;
    pa_threaded_mainloop_set_name(m_mainloop.get(), "sound");
    if (pa_threaded_mainloop_start(m_mainloop.get()) != 0) {
        m_mainloop.reset();
        return;
    }
    const PulseLock lock(m_mainloop.get());
    m_retry.emplace(m_mainloop.get(), [this] { reconnect(); });
    connect();
}

void PulseConnection::close() {
    if (!m_mainloop)
        return;
    {
        const PulseLock lock(m_mainloop.get());
        m_retry.reset();
        endContext();
        m_events.lost();
    }
    pa_threaded_mainloop_stop(m_mainloop.get());
    m_mainloop.reset();
}

PulseConnection::State PulseConnection::state() const {
    if (!m_mainloop)
        return State::waiting;
    const PulseLock lock(m_mainloop.get());
    return m_state;
}

pa_context* PulseConnection::context() const {
    return m_state == State::ready ? m_context.get() : nullptr;
}

void PulseConnection::connect() {
    pa_mainloop_api* api = pa_threaded_mainloop_get_api(m_mainloop.get());
    const PulseProperties properties = clientProperties();
    m_context.reset(pa_context_new_with_proplist(api, nullptr, properties.get()));
    if (!m_context)
        return;
    pa_context_set_state_callback(m_context.get(), &PulseConnection::onState, this);
    // Starting a server is the desktop's business; a fork of this process would be the wrong place.
    if (pa_context_connect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        stateChanged(PA_CONTEXT_FAILED);
}

void PulseConnection::onState(pa_context* context, void* self) {
    static_cast<PulseConnection*>(self)->stateChanged(pa_context_get_state(context));
}

void PulseConnection::stateChanged(pa_context_state_t state) {
    if (state == PA_CONTEXT_READY) {
        m_state = State::ready;
        m_events.ready(m_context.get());
        return;
    }
    if (PA_CONTEXT_IS_GOOD(state))
        return;
    const bool refused = pa_context_errno(m_context.get()) == PA_ERR_ACCESS;
    m_state = refused ? State::denied : State::waiting;
    m_events.lost();
    // A context that has failed cannot be used again. It is replaced later, not here, where the
    // library is still inside it.
    m_retry->start(m_context.get(), retryInterval);
}

void PulseConnection::reconnect() {
    endContext();
    connect();
}

void PulseConnection::endContext() {
    if (m_state == State::ready)
        m_state = State::waiting;
    m_context.reset();
}

}  // namespace sayloft
