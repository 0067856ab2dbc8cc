// SPDX-License-Identifier: MIT
#include "platform/linux/PulseCapture.h"

#include <string>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

// A microphone that has to be woken first, such as one that comes by radio, may take its time; one
// that has delivered and stops doing so is lost.
constexpr auto patienceAtFirst = 2000ms;
constexpr auto patience = 500ms;
// A second look, in case it was this process that slept: what came meanwhile is read first.
constexpr auto secondLook = 50ms;
// Up to two fragments of speech are still on their way when the user lets go of the keys.
constexpr auto tail = 100ms;
constexpr auto fragment = 20ms;

pa_sample_spec floatFormat(const PulseSource& source) {
    return {.format = PA_SAMPLE_FLOAT32NE,
            .rate = source.format.rate,
            .channels = source.format.channels};
}

AudioFormat audioFormat(const PulseSource& source) {
    return {.sampleRate = static_cast<double>(source.format.rate),
            .channels = source.format.channels};
}

}  // namespace

PulseCapture::PulseCapture(PulseConnection& connection, const PulseDevices& devices,
                           AudioCaptureRequest request, PulseSource source)
    : m_connection(connection),
      m_devices(devices),
      m_request(std::move(request)),
      m_source(std::move(source)),
      m_grouper(audioFormat(m_source), m_request.framesPerBuffer, m_request.onBuffer) {}

PulseCapture::~PulseCapture() {
    const PulseLock lock(m_connection.mainloop());
    m_tail.reset();
    m_watchdog.reset();
    m_stream.reset();
}

QString PulseCapture::start() {
    const PulseLock lock(m_connection.mainloop());
    pa_context* context = m_connection.context();
    if (context == nullptr)
        return QStringLiteral("no sound server");
    m_watchdog.emplace(m_connection.mainloop(), [this] { watch(); });
    m_tail.emplace(m_connection.mainloop(), [this] { end({}); });
    if (!connectStream())
        return QString::fromUtf8(pa_strerror(pa_context_errno(context)));
    m_lastData = Clock::now();
    m_patience = patienceAtFirst;
    m_watchdog->start(context, m_patience);
    return {};
}

bool PulseCapture::connectStream() {
    const pa_sample_spec format = floatFormat(m_source);
    m_stream.reset(pa_stream_new(m_connection.context(), "Dictation", &format, &m_source.channels));
    if (!m_stream)
        return false;
    pa_stream_set_state_callback(m_stream.get(), &PulseCapture::onState, this);
    pa_stream_set_read_callback(m_stream.get(), &PulseCapture::onRead, this);
    pa_stream_set_moved_callback(m_stream.get(), &PulseCapture::onMoved, this);
    // Without fragments of a size, and a latency adjusted to them, the first sample comes after
    // one to three seconds.
    constexpr auto unset = static_cast<uint32_t>(-1);
    const auto bytes =
        pa_usec_to_bytes(static_cast<pa_usec_t>(fragment.count()) * PA_USEC_PER_MSEC, &format);
    const pa_buffer_attr attributes{.maxlength = unset,
                                    .tlength = unset,
                                    .prebuf = unset,
                                    .minreq = unset,
                                    .fragsize = static_cast<uint32_t>(bytes)};
    // When a source vanishes, the server moves its streams to whatever is left, be it the sound of
    // the speakers. A chosen microphone must not be replaced at all.
    const bool chosen = m_request.device.has_value();
    const auto flags = static_cast<pa_stream_flags_t>(
        PA_STREAM_ADJUST_LATENCY | (chosen ? PA_STREAM_DONT_MOVE : PA_STREAM_NOFLAGS));
    return pa_stream_connect_record(m_stream.get(), chosen ? m_source.name.c_str() : nullptr,
                                    &attributes, flags) == 0;
}

void PulseCapture::onState(pa_stream* stream, void* self) {
    auto* capture = static_cast<PulseCapture*>(self);
    const pa_stream_state_t state = pa_stream_get_state(stream);
    if (!PA_STREAM_IS_GOOD(state))
        capture->end(
            QString::fromUtf8(pa_strerror(pa_context_errno(pa_stream_get_context(stream)))));
    else if (state == PA_STREAM_READY && capture->m_isEnded)
        pa_stream_disconnect(stream);  // which was too early when it ended
    else if (state == PA_STREAM_READY && !capture->isRightDevice())
        capture->end(QStringLiteral("the microphone is gone"));
}

void PulseCapture::onMoved(pa_stream* /*stream*/, void* self) {
    auto* capture = static_cast<PulseCapture*>(self);
    if (!capture->isRightDevice())
        capture->end(QStringLiteral("the microphone is gone"));
}

// WORKAROUND: pipewire-pulse 0.3.65 records from the default source when it does not know the name
// that it was asked for.
bool PulseCapture::isRightDevice() const {
    const char* name = pa_stream_get_device_name(m_stream.get());
    if (name == nullptr)
        return false;
    return m_request.device ? name == m_source.name : !m_devices.isMonitor(name);
}

void PulseCapture::onRead(pa_stream* /*stream*/, size_t /*bytes*/, void* self) {
    static_cast<PulseCapture*>(self)->readAll();
}

void PulseCapture::readAll() {
    if (m_isEnded)
        return;
    const void* data = nullptr;
    size_t bytes = 0;
    while (pa_stream_peek(m_stream.get(), &data, &bytes) == 0 && bytes > 0) {
        // No data but a length is a hole; as silence it keeps the time.
        m_grouper.add(static_cast<const float*>(data), bytes / sizeof(float));
        pa_stream_drop(m_stream.get());
        m_lastData = Clock::now();
        m_isStale = false;
        if (std::exchange(m_patience, patience) == patienceAtFirst)
            m_watchdog->start(pa_stream_get_context(m_stream.get()), patience);
    }
}

// A frozen server, a suspended source: nothing tells but the silence on the line. The connection
// may have a new context by then, so the timer is set on the one that the stream came from.
void PulseCapture::watch() {
    pa_context* context = pa_stream_get_context(m_stream.get());
    const auto waited =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - m_lastData);
    if (waited < m_patience) {
        m_watchdog->start(context, m_patience - waited);
        return;
    }
    if (std::exchange(m_isStale, true))
        end(QStringLiteral("no sound arrives"));
    else
        m_watchdog->start(context, secondLook);
}

void PulseCapture::finish() {
    const PulseLock lock(m_connection.mainloop());
    if (!m_isEnded)
        m_tail->start(pa_stream_get_context(m_stream.get()), tail);
}

// Runs within callbacks of the stream and of the timers, which therefore live on.
void PulseCapture::end(const QString& error) {
    if (std::exchange(m_isEnded, true))
        return;
    m_tail->stop();
    m_watchdog->stop();
    pa_stream_disconnect(m_stream.get());
    m_grouper.flush();
    m_request.onEnd(error);
}

}  // namespace sayloft
