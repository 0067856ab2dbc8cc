// SPDX-License-Identifier: MIT
#include "platform/linux/PulseTimer.h"

#include <utility>

namespace sayloft {

PulseTimer::PulseTimer(pa_threaded_mainloop* mainloop, std::function<void()> call)
    : m_api(pa_threaded_mainloop_get_api(mainloop)), m_call(std::move(call)) {}

void PulseTimer::start(pa_context* context, std::chrono::milliseconds delay) {
    stop();
    const auto wait = static_cast<pa_usec_t>(delay.count()) * PA_USEC_PER_MSEC;
    m_event = pa_context_rttime_new(context, pa_rtclock_now() + wait, &PulseTimer::onTime, this);
}

void PulseTimer::stop() {
    if (m_event != nullptr)
        m_api->time_free(std::exchange(m_event, nullptr));
}

void PulseTimer::onTime(pa_mainloop_api* /*api*/, pa_time_event* /*event*/, const timeval* /*time*/,
                        void* self) {
    auto* timer = static_cast<PulseTimer*>(self);
    timer->stop();
    timer->m_call();
}

}  // namespace sayloft
