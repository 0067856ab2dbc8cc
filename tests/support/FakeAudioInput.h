// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <memory>
#include <optional>
#include <vector>

namespace sayloft::test {

/// Audio devices that only exist in the test, which delivers what they capture. Everything happens
/// on the thread that calls.
class FakeAudioInput : public AudioInput {
public:
    struct Device {
        AudioDeviceId id = 0;
        bool hasInput = true;
        std::uint32_t transport = 0;
        std::optional<QString> uid = {};
        std::optional<QString> name = {};
        AudioFormat format = {.sampleRate = 48000, .channels = 1};
    };

    /// One call of startCapture and what has become of it.
    struct Capture {
        AudioCaptureRequest request;
        AudioFormat format;
        bool isFinishing = false;
        bool hasEnded = false;
        bool isDestroyed = false;

        /// Hands over interleaved samples as one buffer.
        void deliver(std::vector<float> samples) const;
        /// Once.
        void end(const QString& error = QString());
    };

    /// What a capture does when it is told to finish.
    enum class Finish { atOnce, whenTheTestSays };

    std::vector<Device> deviceList;
    AudioFormat defaultFormat;  ///< of the default input; rate 0 for none
    QString startError;         ///< when set, no capture can be started
    Authorization answer = Authorization::authorized;
    Finish finish = Finish::atOnce;
    std::vector<std::shared_ptr<Capture>> captures;
    std::optional<Authorization> userSays;  ///< the answer to a request; none: nobody gives one
    int accessRequests = 0;

    /// Whether the newest capture still hears the microphone.
    [[nodiscard]] bool isCapturing() const;

    [[nodiscard]] std::vector<AudioDeviceId> devices() const override;
    [[nodiscard]] bool hasInput(AudioDeviceId device) const override;
    [[nodiscard]] std::uint32_t transport(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> uid(AudioDeviceId device) const override;
    [[nodiscard]] std::optional<QString> name(AudioDeviceId device) const override;
    [[nodiscard]] AudioFormat inputFormat(std::optional<AudioDeviceId> device) const override;
    [[nodiscard]] AudioCaptureResult startCapture(AudioCaptureRequest request) override;
    [[nodiscard]] Authorization authorization() const override { return answer; }
    void requestAccess(std::function<void(bool granted)> answered) override;

private:
    [[nodiscard]] const Device* device(AudioDeviceId id) const;
};

}  // namespace sayloft::test
