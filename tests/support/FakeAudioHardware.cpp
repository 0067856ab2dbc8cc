// SPDX-License-Identifier: MIT
#include "tests/support/FakeAudioHardware.h"

#include <algorithm>
#include <utility>

namespace sayloft::test {

class FakeCapture : public AudioCapture {
public:
    explicit FakeCapture(FakeAudioHardware& hardware) : m_hardware(hardware) {}
    ~FakeCapture() override { m_hardware.m_capturing.reset(); }
    FakeCapture(const FakeCapture&) = delete;
    FakeCapture& operator=(const FakeCapture&) = delete;

    void finish() override { m_hardware.lose(); }

private:
    FakeAudioHardware& m_hardware;
};

std::vector<AudioDeviceId> FakeAudioHardware::devices() const {
    std::vector<AudioDeviceId> ids;
    for (const FakeAudioDevice& device : hardware)
        ids.push_back(device.id);
    return ids;
}

bool FakeAudioHardware::hasInput(AudioDeviceId device) const {
    const FakeAudioDevice* found = find(device);
    return found != nullptr && found->hasInput;
}

std::uint32_t FakeAudioHardware::transport(AudioDeviceId device) const {
    const FakeAudioDevice* found = find(device);
    return found != nullptr ? found->transport : 0;
}

std::optional<QString> FakeAudioHardware::uid(AudioDeviceId device) const {
    const FakeAudioDevice* found = find(device);
    return found != nullptr ? found->uid : std::nullopt;
}

std::optional<QString> FakeAudioHardware::name(AudioDeviceId device) const {
    const FakeAudioDevice* found = find(device);
    return found != nullptr ? found->name : std::nullopt;
}

AudioFormat FakeAudioHardware::inputFormat(std::optional<AudioDeviceId> device) const {
    if (!device)
        return defaultFormat;
    const FakeAudioDevice* found = find(*device);
    return found != nullptr ? found->format : AudioFormat();
}

AudioCaptureResult FakeAudioHardware::startCapture(AudioCaptureRequest request) {
    if (!startError.isEmpty())
        return {nullptr, startError};
    lastCaptured = request.device;
    ++capturesStarted;
    m_capturing = std::move(request);
    return {std::make_unique<FakeCapture>(*this), QString()};
}

void FakeAudioHardware::requestAccess(std::function<void(bool)> answered) {
    ++accessRequests;
    answered(authorizationStatus == Authorization::authorized);
}

void FakeAudioHardware::deliver(std::vector<float> interleaved) {
    if (!m_capturing)
        return;
    const AudioFormat format = inputFormat(m_capturing->device);
    const int frames = static_cast<int>(interleaved.size()) / std::max(1, format.channels);
    m_capturing->onBuffer({interleaved.data(), frames, format});
}

void FakeAudioHardware::lose() {
    if (!m_capturing)
        return;
    const AudioCaptureRequest request = std::move(*std::exchange(m_capturing, std::nullopt));
    request.onEnd();
}

const FakeAudioDevice* FakeAudioHardware::find(AudioDeviceId device) const {
    const auto found = std::find_if(hardware.begin(), hardware.end(),
                                    [&](const FakeAudioDevice& each) { return each.id == device; });
    return found == hardware.end() ? nullptr : &*found;
}

}  // namespace sayloft::test
