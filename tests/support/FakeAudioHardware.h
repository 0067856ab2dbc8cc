// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <functional>
#include <optional>
#include <vector>

namespace sayloft::test {

/// One device of hardware that need not exist.
struct FakeAudioDevice {
    AudioDeviceId id = 0;
    bool hasInput = true;
    std::uint32_t transport = 0;
    std::optional<QString> uid;
    std::optional<QString> name;
    AudioFormat format{48000, 1};
};

/// Audio hardware in any state, including those that no machine at hand can be brought into. A
/// capture delivers what the test hands to `deliver`.
class FakeAudioHardware : public AudioInput {
public:
    [[nodiscard]] std::vector<AudioDeviceId> devices() const override;
    [[nodiscard]] bool hasInput(AudioDeviceId device) const override;
    [[nodiscard]] std::uint32_t transport(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> uid(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> name(AudioDeviceId device) const override;
    [[nodiscard]] AudioFormat inputFormat(std::optional<AudioDeviceId> device) const override;
    [[nodiscard]] AudioCaptureResult startCapture(AudioCaptureRequest request) override;
    [[nodiscard]] Authorization authorization() const override { return authorizationStatus; }
    void requestAccess(std::function<void(bool)> answered) override;

    /// Hands one buffer of the format that was captured to the running capture.
    void deliver(std::vector<float> interleaved);

    /// Ends the running capture as a lost device does.
    void lose();

    [[nodiscard]] bool isCapturing() const { return m_capturing.has_value(); }

    std::vector<FakeAudioDevice> hardware;
    AudioFormat defaultFormat{48000, 1};
    QString startError;  ///< not empty: captures cannot be started
    std::optional<AudioDeviceId> lastCaptured;
    int capturesStarted = 0;
    Authorization authorizationStatus = Authorization::authorized;
    int accessRequests = 0;

private:
    friend class FakeCapture;
    [[nodiscard]] const FakeAudioDevice* find(AudioDeviceId device) const;

    std::optional<AudioCaptureRequest> m_capturing;
};

}  // namespace sayloft::test
