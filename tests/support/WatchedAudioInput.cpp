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

std::vector<AudioDeviceId> WatchedAudioInput::devices() const {
    return m_input.devices();
}

bool WatchedAudioInput::hasInput(AudioDeviceId device) const {
    return m_input.hasInput(device);
}

std::uint32_t WatchedAudioInput::transport(AudioDeviceId device) const {
    return m_input.transport(device);
}

std::optional<QString> WatchedAudioInput::uid(AudioDeviceId device) const {
    return m_input.uid(device);
}

std::optional<QString> WatchedAudioInput::name(AudioDeviceId device) const {
    return m_input.name(device);
}

AudioFormat WatchedAudioInput::inputFormat(std::optional<AudioDeviceId> device) const {
    return m_input.inputFormat(device);
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
    return m_input.startCapture(std::move(request));
}

AudioInput::Authorization WatchedAudioInput::authorization() const {
    return m_input.authorization();
}

void WatchedAudioInput::requestAccess(std::function<void(bool granted)> answered) {
    m_input.requestAccess(std::move(answered));
}

}  // namespace sayloft::test
