// SPDX-License-Identifier: MIT
#include "tests/support/FakeAudioInput.h"

#include <algorithm>
#include <utility>

namespace sayloft::test {
namespace {

class FakeCapture : public AudioCapture {
public:
    FakeCapture(std::shared_ptr<FakeAudioInput::Capture> record, FakeAudioInput::Finish finish)
        : m_record(std::move(record)), m_finish(finish) {}
    ~FakeCapture() override { m_record->isDestroyed = true; }
    FakeCapture(const FakeCapture&) = delete;
    FakeCapture& operator=(const FakeCapture&) = delete;

    void finish() override {
        m_record->isFinishing = true;
        if (m_finish == FakeAudioInput::Finish::atOnce && !m_record->hasEnded)
            m_record->end();
    }

private:
    std::shared_ptr<FakeAudioInput::Capture> m_record;
    FakeAudioInput::Finish m_finish;
};

}  // namespace

void FakeAudioInput::Capture::deliver(std::vector<float> samples) const {
    const auto frames = static_cast<int>(samples.size()) / format.channels;
    request.onBuffer({.samples = samples.data(), .frames = frames, .format = format});
}

bool FakeAudioInput::isCapturing() const {
    return !captures.empty() && !captures.back()->isFinishing && !captures.back()->isDestroyed;
}

void FakeAudioInput::Capture::end(const QString& error) {
    hasEnded = true;
    request.onEnd(error);
}

std::vector<AudioDeviceId> FakeAudioInput::devices() const {
    std::vector<AudioDeviceId> ids;
    for (const Device& entry : deviceList)
        ids.push_back(entry.id);
    return ids;
}

bool FakeAudioInput::hasInput(AudioDeviceId id) const {
    const Device* const found = device(id);
    return found != nullptr && found->hasInput;
}

std::uint32_t FakeAudioInput::transport(AudioDeviceId id) const {
    const Device* const found = device(id);
    return found != nullptr ? found->transport : 0;
}

std::optional<QString> FakeAudioInput::uid(AudioDeviceId id) const {
    const Device* const found = device(id);
    return found != nullptr ? found->uid : std::nullopt;
}

std::optional<QString> FakeAudioInput::name(AudioDeviceId id) const {
    const Device* const found = device(id);
    return found != nullptr ? found->name : std::nullopt;
}

AudioFormat FakeAudioInput::inputFormat(std::optional<AudioDeviceId> id) const {
    if (!id)
        return defaultFormat;
    const Device* const found = device(*id);
    return found != nullptr && found->hasInput ? found->format : AudioFormat();
}

AudioCaptureResult FakeAudioInput::startCapture(AudioCaptureRequest request) {
    if (!startError.isEmpty())
        return {nullptr, startError};
    const AudioFormat format = inputFormat(request.device);
    captures.push_back(std::make_shared<Capture>(Capture{std::move(request), format}));
    return {std::make_unique<FakeCapture>(captures.back(), finish), QString()};
}

void FakeAudioInput::requestAccess(std::function<void(bool granted)> answered) {
    ++accessRequests;
    answer = userSays.value_or(answer);
    answered(answer == Authorization::authorized);
}

const FakeAudioInput::Device* FakeAudioInput::device(AudioDeviceId id) const {
    const auto found = std::find_if(deviceList.begin(), deviceList.end(),
                                    [id](const Device& entry) { return entry.id == id; });
    return found == deviceList.end() ? nullptr : &*found;
}

}  // namespace sayloft::test
