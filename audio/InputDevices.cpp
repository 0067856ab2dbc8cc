// SPDX-License-Identifier: MIT
#include "audio/InputDevices.h"

namespace sayloft {

namespace {
constexpr std::uint32_t builtInTransport = fourCharCode("bltn");
}

std::vector<AudioDeviceId> InputDevices::allAudioDevices() const {
    return m_input.devices();
}

bool InputDevices::deviceHasInput(AudioDeviceId device) const {
    return m_input.hasInput(device);
}

std::uint32_t InputDevices::deviceTransport(AudioDeviceId device) const {
    return m_input.transport(device);
}

std::optional<QString> InputDevices::deviceUID(AudioDeviceId device) const {
    return m_input.uid(device);
}

QString InputDevices::deviceName(AudioDeviceId device) const {
    return m_input.name(device).value_or(QStringLiteral("Unknown"));
}

std::optional<AudioDeviceId> InputDevices::builtInInputDeviceID() const {
    for (const AudioDeviceId device : allAudioDevices()) {
        if (deviceHasInput(device) && deviceTransport(device) == builtInTransport)
            return device;
    }
    return std::nullopt;
}

std::vector<InputDevice> InputDevices::inputDeviceList() const {
    std::vector<InputDevice> list;
    for (const AudioDeviceId device : allAudioDevices()) {
        if (!deviceHasInput(device))
            continue;
        if (const std::optional<QString> uid = deviceUID(device))
            list.push_back({*uid, deviceName(device)});
    }
    return list;
}

std::optional<AudioDeviceId> InputDevices::deviceIDForUID(const QString& uid) const {
    for (const AudioDeviceId device : allAudioDevices()) {
        if (deviceUID(device) == uid)
            return device;
    }
    return std::nullopt;
}

}  // namespace sayloft
