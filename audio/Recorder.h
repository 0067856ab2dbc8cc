// SPDX-License-Identifier: MIT
#pragma once

#include "audio/InputDevices.h"
#include "audio/Recording.h"
#include "platform/AudioInput.h"

#include <QString>
#include <QThreadPool>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace sayloft {

/// Records the microphone into a WAV file as the speech helper takes it: 16 kHz, one channel,
/// 16-bit; on in memory where the disk does not take more. One object serves the whole run, one
/// recording at a time. Main thread.
class Recorder {
public:
    /// `input` outlives this object. Removes what a crash has left of earlier recordings, so there
    /// must be no other recorder of this user.
    explicit Recorder(AudioInput& input);
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// The wanted device; none, or one that is not there, means the built-in microphone, and the
    /// system's default input where there is none.
    std::optional<QString> deviceUID;
    /// Whether quiet voices are amplified; a change counts from the next buffer on.
    std::atomic<bool> boost = true;

    /// The file of a recording that begins while no other is in use.
    [[nodiscard]] QString wavURL() const { return m_files->mainFile(); }

    /// Begins a recording. A failure is logged and nothing is running then. A recording that is
    /// already running is given up.
    void start();

    /// Ends the recording without waiting: its last tenth of a second is still being written when
    /// this returns. Null when nothing was recorded: `start()` failed, or the capture broke off
    /// before its first sample, which is logged then.
    [[nodiscard]] std::shared_ptr<Recording> stop();

    /// Input level before any boost, 0 to 1; 0 while nothing is recorded.
    [[nodiscard]] double level() const;

private:
    struct Run {
        std::unique_ptr<AudioCapture> capture;
        std::shared_ptr<RecordingPipeline> pipeline;
        std::shared_ptr<Recording> recording;
    };
    struct Finishing {
        std::unique_ptr<AudioCapture> capture;
        std::shared_ptr<RecordingPipeline> pipeline;
    };

    [[nodiscard]] std::optional<AudioDeviceId> resolveDevice() const;
    [[nodiscard]] std::optional<Run> openRun(AudioFormat format);
    [[nodiscard]] AudioCaptureRequest captureRequest(std::optional<AudioDeviceId> device,
                                                     const Run& run) const;
    void dropEndedCaptures();

    AudioInput& m_input;
    InputDevices m_devices;
    std::shared_ptr<RecordingFiles> m_files;
    QThreadPool m_disk;  ///< one thread
    // Last: destroying a capture waits for its callback, which reads the members above.
    std::vector<Finishing> m_finishing;
    std::optional<Run> m_run;
};

}  // namespace sayloft
