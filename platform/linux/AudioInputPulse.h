// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"
#include "platform/linux/PulseConnection.h"
#include "platform/linux/PulseDevices.h"

#include <QObject>

namespace sayloft {

/// Microphones of a PulseAudio server, or of PipeWire in its place. A device is a source: its id
/// the server's index, its uid the source's name. Monitors of sinks are devices without input.
class AudioInputPulse : public AudioInput {
public:
    AudioInputPulse();
    ~AudioInputPulse() override;
    AudioInputPulse(const AudioInputPulse&) = delete;
    AudioInputPulse& operator=(const AudioInputPulse&) = delete;

    [[nodiscard]] std::vector<AudioDeviceId> devices() const override;
    [[nodiscard]] bool hasInput(AudioDeviceId device) const override;
    [[nodiscard]] std::uint32_t transport(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> uid(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> name(AudioDeviceId device) const override;
    [[nodiscard]] AudioFormat inputFormat(std::optional<AudioDeviceId> device) const override;
    /// The capture must end before this object does.
    [[nodiscard]] AudioCaptureResult startCapture(AudioCaptureRequest request) override;
    [[nodiscard]] Authorization authorization() const override;
    /// There is no question to ask the user: the answer is whether the server lets us in now.
    void requestAccess(std::function<void(bool granted)> answered) override;

private:
    [[nodiscard]] std::optional<PulseSource> inputSource(std::optional<AudioDeviceId> device) const;

    PulseDevices m_devices;
    PulseConnection m_connection;  ///< ends first: its thread calls the devices
    QObject m_answers;             ///< answers still to be given end with this object
};

}  // namespace sayloft
