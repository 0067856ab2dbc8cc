// SPDX-License-Identifier: MIT
#include "platform/linux/AudioInputPulse.h"

#include "platform/linux/PulseCapture.h"

#include <utility>

namespace sayloft {

AudioInputPulse::AudioInputPulse() {
    m_connection.open({.ready = [this](pa_context* context) { m_devices.connected(context); },
                       .lost = [this] { m_devices.disconnected(); }});
}

AudioInputPulse::~AudioInputPulse() = default;

std::vector<AudioDeviceId> AudioInputPulse::devices() const {
    std::vector<AudioDeviceId> ids;
    for (const PulseSource& source : m_devices.sources())
        ids.push_back(source.id);
    return ids;
}

bool AudioInputPulse::hasInput(AudioDeviceId device) const {
    return inputSource(device).has_value();
}

std::uint32_t AudioInputPulse::transport(AudioDeviceId device) const {
    const auto source = m_devices.source(device);
    return source ? source->transport : 0;
}

std::optional<QString> AudioInputPulse::uid(AudioDeviceId device) const {
    const auto source = m_devices.source(device);
    return source ? std::optional(QString::fromStdString(source->name)) : std::nullopt;
}

std::optional<QString> AudioInputPulse::name(AudioDeviceId device) const {
    const auto source = m_devices.source(device);
    return source ? std::optional(source->description) : std::nullopt;
}

std::optional<PulseSource> AudioInputPulse::inputSource(std::optional<AudioDeviceId> device) const {
    auto source = device ? m_devices.source(*device) : m_devices.defaultSource();
    return source && !source->isMonitor ? std::move(source) : std::nullopt;
}

AudioFormat AudioInputPulse::inputFormat(std::optional<AudioDeviceId> device) const {
    const auto source = inputSource(device);
    if (!source)
        return {};
    return {.sampleRate = static_cast<double>(source->format.rate),
            .channels = source->format.channels};
}

AudioCaptureResult AudioInputPulse::startCapture(AudioCaptureRequest request) {
    if (m_connection.state() != PulseConnection::State::ready)
        return {.capture = nullptr, .error = QStringLiteral("no sound server")};
    auto source = inputSource(request.device);
    if (!source)
        return {.capture = nullptr, .error = QStringLiteral("no such microphone")};
    auto capture = std::make_unique<PulseCapture>(m_connection, m_devices, std::move(request),
                                                  std::move(*source));
    QString error = capture->start();
    if (!error.isEmpty())
        return {.capture = nullptr, .error = std::move(error)};
    return {.capture = std::move(capture), .error = {}};
}

AudioInput::Authorization AudioInputPulse::authorization() const {
    switch (m_connection.state()) {
        case PulseConnection::State::ready:
            return Authorization::authorized;
        case PulseConnection::State::denied:
            return Authorization::denied;
        case PulseConnection::State::waiting:
            break;
    }
    return Authorization::notDetermined;
}

void AudioInputPulse::requestAccess(std::function<void(bool granted)> answered) {
    const auto answer = [this, answered = std::move(answered)] {
        answered(authorization() == Authorization::authorized);
    };
    QMetaObject::invokeMethod(&m_answers, answer, Qt::QueuedConnection);
}

}  // namespace sayloft
