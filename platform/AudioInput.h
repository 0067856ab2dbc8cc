// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sayloft {

/// Builds a four-character code, for example of a transport type.
constexpr std::uint32_t fourCharCode(const char (&text)[5]) {
    std::uint32_t code = 0;
    for (int i = 0; i < 4; ++i)
        code = (code << 8U) | static_cast<unsigned char>(text[i]);
    return code;
}

using AudioDeviceId = std::uint32_t;

/// Format of captured audio: interleaved 32-bit float samples.
struct AudioFormat {
    double sampleRate = 0;  ///< frames per second; 0 when there is no input
    int channels = 0;
};

/// A captured buffer. The receiver may change the samples in place.
struct AudioBuffer {
    float* samples = nullptr;  ///< interleaved, nominally −1 to 1; null for data that is not float
    int frames = 0;
    AudioFormat format;
};

/// A running capture. Destroying it ends the capture at once and waits for a call of `onBuffer` or
/// `onEnd` that is under way; must not be destroyed from within one of them.
class AudioCapture {
public:
    virtual ~AudioCapture() = default;

    /// Captures what is still on its way from the microphone, at most about 0.1 s, then delivers
    /// the last, shorter buffer and `onEnd`. Returns at once. Main thread.
    virtual void finish() = 0;
};

struct AudioCaptureRequest {
    std::optional<AudioDeviceId> device;  ///< none: the system's default input
    int framesPerBuffer = 4096;           ///< only the last buffer is shorter
    /// Called on the backend's audio thread for every buffer.
    std::function<void(const AudioBuffer&)> onBuffer;
    /// Called once, on the backend's audio thread, after the last buffer: after `finish()`, with an
    /// empty `error`, or with the reason when the device or the sound server is lost or refuses.
    std::function<void(const QString& error)> onEnd;
};

/// Either a running capture or the reason why there is none.
struct AudioCaptureResult {
    std::unique_ptr<AudioCapture> capture;
    QString error;
};

/// The system's audio devices and the capture from one of them. Main thread only. Answers come from
/// a picture of the devices that the backend keeps up to date, so they do not block, but for the
/// very first, which may wait about 0.1 s for that picture.
class AudioInput {
public:
    /// Whether the system lets us record.
    enum class Authorization { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

    virtual ~AudioInput() = default;

    [[nodiscard]] virtual std::vector<AudioDeviceId> devices() const = 0;
    [[nodiscard]] virtual bool hasInput(AudioDeviceId device) const = 0;
    /// Four-character code such as 'bltn', 'usb ', 'blue'; 0 when unknown.
    [[nodiscard]] virtual std::uint32_t transport(AudioDeviceId device) const = 0;
    /// Stable across reconnections and restarts, unlike the id.
    [[nodiscard]] virtual std::optional<QString> uid(AudioDeviceId device) const = 0;
    [[nodiscard]] virtual std::optional<QString> name(AudioDeviceId device) const = 0;

    /// The format in which a capture would deliver; rate 0 when there is no such input.
    [[nodiscard]] virtual AudioFormat inputFormat(std::optional<AudioDeviceId> device) const = 0;
    [[nodiscard]] virtual AudioCaptureResult startCapture(AudioCaptureRequest request) = 0;

    [[nodiscard]] virtual Authorization authorization() const = 0;
    /// Asks the user where the system has such a question; `answered` comes on the main thread.
    virtual void requestAccess(std::function<void(bool granted)> answered) = 0;
};

}  // namespace sayloft
