// SPDX-License-Identifier: MIT
#include "tests/support/WatchedAudioInput.h"

#include <utility>

namespace sayloft::test {

std::optional<WatchedAudioInput::Clock::time_point> WatchedAudioInput::firstSample() const {
    const Clock::rep ticks = m_firstSample;
    if (ticks == 0)
        return std::nullopt;
    return Clock::time_point(Clock::duration(ticks));
}

AudioCaptureResult WatchedAudioInput::startCapture(AudioCaptureRequest request) {
    request.framesPerBuffer = framesPerBuffer.value_or(request.framesPerBuffer);
    m_firstSample = 0;
    const auto onBuffer = std::exchange(request.onBuffer, {});
    request.onBuffer = [this, onBuffer](const AudioBuffer& buffer) {
        Clock::rep none = 0;
        m_firstSample.compare_exchange_strong(none, Clock::now().time_since_epoch().count());
        onBuffer(buffer);
        m_frames += buffer.frames;
    };
    const auto onEnd = std::exchange(request.onEnd, {});
    request.onEnd = [this, onEnd](const QString& error) {
        onEnd(error);
        ++m_ends;
    };
    return AudioInputPulse::startCapture(std::move(request));
}

}  // namespace sayloft::test
