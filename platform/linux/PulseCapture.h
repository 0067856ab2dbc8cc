// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"
#include "platform/linux/FrameGrouper.h"
#include "platform/linux/PulseConnection.h"
#include "platform/linux/PulseDevices.h"
#include "platform/linux/PulseTimer.h"

#include <chrono>
#include <optional>

namespace sayloft {

/// A record stream. Main thread; everything private runs with the mainloop's lock held, most of it
/// on the mainloop's thread. The connection and the devices have to outlive it.
class PulseCapture : public AudioCapture {
public:
    PulseCapture(PulseConnection& connection, const PulseDevices& devices,
                 AudioCaptureRequest request, PulseSource source);
    ~PulseCapture() override;
    PulseCapture(const PulseCapture&) = delete;
    PulseCapture& operator=(const PulseCapture&) = delete;

    /// To be called once; the reason why nothing is captured, or an empty string.
    [[nodiscard]] QString start();

    void finish() override;

private:
    using Clock = std::chrono::steady_clock;

    static void onState(pa_stream* stream, void* self);
    static void onRead(pa_stream* stream, size_t bytes, void* self);
    static void onMoved(pa_stream* stream, void* self);

    [[nodiscard]] bool connectStream();
    [[nodiscard]] bool isRightDevice() const;
    void readAll();
    void watch();
    void end(const QString& error);

    PulseConnection& m_connection;
    const PulseDevices& m_devices;
    const AudioCaptureRequest m_request;
    const PulseSource m_source;
    FrameGrouper m_grouper;
    PulseStream m_stream;
    std::optional<PulseTimer> m_watchdog;
    std::optional<PulseTimer> m_tail;
    Clock::time_point m_lastData;
    std::chrono::milliseconds m_patience{0};  ///< without data
    bool m_isStale = false;
    bool m_isEnded = false;
};

}  // namespace sayloft
