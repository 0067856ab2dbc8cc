// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace sayloft {

/// How the settings name an input: `uid` is stored, `name` is shown.
struct InputDevice {
    QString uid;
    QString name;

    bool operator==(const InputDevice&) const = default;
};

/// Questions about the audio devices as they are at the moment of the call; nothing is remembered
/// and no failure is reported other than by an empty answer. Main thread.
class InputDevices {
public:
    /// `input` outlives this object.
    explicit InputDevices(const AudioInput& input) : m_input(input) {}

    [[nodiscard]] std::vector<AudioDeviceId> allAudioDevices() const;
    [[nodiscard]] bool deviceHasInput(AudioDeviceId device) const;
    /// Four-character code; 0 when unknown.
    [[nodiscard]] std::uint32_t deviceTransport(AudioDeviceId device) const;
    [[nodiscard]] std::optional<QString> deviceUID(AudioDeviceId device) const;
    /// "Unknown" when the device has no readable name.
    [[nodiscard]] QString deviceName(AudioDeviceId device) const;

    /// The first device with input whose transport is 'bltn'.
    [[nodiscard]] std::optional<AudioDeviceId> builtInInputDeviceID() const;
    /// All devices with input that have a readable identifier, in the system's order.
    [[nodiscard]] std::vector<InputDevice> inputDeviceList() const;
    /// The first device, with input or without, whose identifier is exactly `uid`.
    [[nodiscard]] std::optional<AudioDeviceId> deviceIDForUID(const QString& uid) const;

private:
    const AudioInput& m_input;
};

}  // namespace sayloft
