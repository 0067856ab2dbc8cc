// SPDX-License-Identifier: MIT
#include "audio/Recorder.h"

#include "audio/FailedRecording.h"
#include "models/Paths.h"
#include "storage/Log.h"
#include "storage/PrivateFolder.h"

#include <utility>

namespace sayloft {
namespace {

QString describe(AudioFormat format, bool hasBuiltInMicrophone) {
    return QStringLiteral("recording @ %1Hz (built-in mic: %2)")
        .arg(static_cast<long long>(format.sampleRate))
        .arg(hasBuiltInMicrophone ? QStringLiteral("true") : QStringLiteral("false"));
}

}  // namespace

Recorder::Recorder(AudioInput& input)
    : m_input(input),
      m_devices(input),
      m_files(std::make_shared<RecordingFiles>(TEMP_DIR + QStringLiteral("/sayloft_rec.wav"))) {
    m_disk.setMaxThreadCount(1);
    m_files->removeStaleSiblings();
    FailedRecording::removeLeftover();
}

Recorder::~Recorder() = default;

void Recorder::start() {
    m_run.reset();
    dropEndedCaptures();

    const std::optional<AudioDeviceId> device = resolveDevice();
    const AudioFormat format = m_input.inputFormat(device);
    // Says whether there is a built-in microphone, not whether it was chosen.
    logf(describe(format, m_devices.builtInInputDeviceID().has_value()));
    if (!(format.sampleRate > 0)) {
        logf(QStringLiteral("no input format"));
        return;
    }
    std::optional<Run> run = openRun(format);
    if (!run) {
        logf(QStringLiteral("could not open output file"));
        return;
    }
    AudioCaptureResult result = m_input.startCapture(captureRequest(device, *run));
    if (!result.capture) {
        logf(QStringLiteral("engine start failed: ") + result.error);
        return;
    }
    run->capture = std::move(result.capture);
    m_run = std::move(run);
}

std::shared_ptr<Recording> Recorder::stop() {
    if (!m_run)
        return nullptr;
    Run run = *std::exchange(m_run, std::nullopt);
    if (const std::optional<QString> error = run.pipeline->startError()) {
        logf(QStringLiteral("engine start failed: ") + *error);
        return nullptr;
    }
    run.capture->finish();
    m_finishing.push_back({std::move(run.capture), std::move(run.pipeline)});
    return std::move(run.recording);
}

double Recorder::level() const {
    return m_run ? m_run->pipeline->level() : 0.0;
}

std::optional<AudioDeviceId> Recorder::resolveDevice() const {
    if (deviceUID) {
        if (const auto wanted = m_devices.deviceIDForUID(*deviceUID))
            return wanted;
    }
    if (const auto builtIn = m_devices.builtInInputDeviceID())
        return builtIn;
    logf(QStringLiteral("no capture device resolved — using default input"));
    return std::nullopt;
}

std::optional<Recorder::Run> Recorder::openRun(AudioFormat format) {
    makePrivateFolder(TEMP_DIR);
    std::shared_ptr<RecordingFiles::Lease> name = m_files->lease();
    std::optional<WavFile> file = WavFile::create(name->path());
    if (!file)
        return std::nullopt;
    auto writer = std::make_unique<WavWriter>(m_disk, name, std::move(*file));
    auto pipeline = std::make_shared<RecordingPipeline>(std::move(writer), format);
    auto recording = std::make_shared<Recording>(std::move(name), pipeline);
    return Run{nullptr, std::move(pipeline), std::move(recording)};
}

AudioCaptureRequest Recorder::captureRequest(std::optional<AudioDeviceId> device,
                                             const Run& run) const {
    AudioCaptureRequest request;
    request.device = device;
    request.onBuffer = [this, pipeline = run.pipeline](const AudioBuffer& buffer) {
        using Boost = RecordingPipeline::Boost;
        pipeline->handle(buffer, boost ? Boost::on : Boost::off);
    };
    request.onEnd = [pipeline = run.pipeline](const QString& error) { pipeline->end(error); };
    return request;
}

void Recorder::dropEndedCaptures() {
    std::erase_if(m_finishing,
                  [](const Finishing& finishing) { return finishing.pipeline->hasEnded(); });
}

}  // namespace sayloft
