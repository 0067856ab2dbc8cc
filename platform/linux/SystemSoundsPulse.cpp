// SPDX-License-Identifier: MIT
#include "platform/linux/SystemSoundsPulse.h"

#include <QFile>

#include <memory>
#include <utility>

#include <sndfile.h>

namespace sayloft {
namespace {

struct CloseSoundFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, CloseSoundFile>;

}  // namespace

SystemSoundsPulse::SystemSoundsPulse(const QString& folder) {
    for (const QString& name : {QStringLiteral("Pop"), QStringLiteral("Tink")}) {
        if (auto sound = read(folder, name))
            m_sounds.emplace(name, std::move(*sound));
    }
    m_connection.open({.ready = [this](pa_context* context) { uploadAll(context); },
                       .lost = [this] { m_uploads.clear(); }});
}

SystemSoundsPulse::~SystemSoundsPulse() = default;

std::optional<SystemSoundsPulse::Sound> SystemSoundsPulse::read(const QString& folder,
                                                                const QString& name) {
    const QString path = folder + QLatin1Char('/') + name + QStringLiteral(".wav");
    SF_INFO info{};
    const SoundFile file(sf_open(QFile::encodeName(path).constData(), SFM_READ, &info));
    if (!file || info.channels < 1 || info.channels > 2)
        return std::nullopt;
    Sound sound{.sampleName = "sayloft-" + name.toUtf8(),
                .format = {.format = PA_SAMPLE_S16NE,
                           .rate = static_cast<uint32_t>(info.samplerate),
                           .channels = static_cast<uint8_t>(info.channels)},
                .samples = {}};
    sound.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
    if (sf_readf_short(file.get(), sound.samples.data(), info.frames) != info.frames)
        return std::nullopt;
    return sound;
}

void SystemSoundsPulse::uploadAll(pa_context* context) {
    m_uploads.clear();
    for (auto& [name, sound] : m_sounds) {
        PulseStream upload(
            pa_stream_new(context, sound.sampleName.constData(), &sound.format, nullptr));
        if (!upload)
            continue;
        pa_stream_set_state_callback(upload.get(), &SystemSoundsPulse::onState, &sound);
        const std::size_t bytes = sound.samples.size() * sizeof(std::int16_t);
        if (pa_stream_connect_upload(upload.get(), bytes) == 0)
            m_uploads.push_back(std::move(upload));
    }
}

void SystemSoundsPulse::onState(pa_stream* stream, void* sound) {
    if (pa_stream_get_state(stream) != PA_STREAM_READY)
        return;
    const auto& samples = static_cast<const Sound*>(sound)->samples;
    pa_stream_write(stream, samples.data(), samples.size() * sizeof(std::int16_t), nullptr, 0,
                    PA_SEEK_RELATIVE);
    pa_stream_finish_upload(stream);
}

void SystemSoundsPulse::play(const QString& name) {
    const auto sound = m_sounds.find(name);
    if (sound == m_sounds.end() || m_connection.mainloop() == nullptr)
        return;
    const PulseLock lock(m_connection.mainloop());
    if (pa_context* context = m_connection.context()) {
        const PulseOperation played(
            pa_context_play_sample(context, sound->second.sampleName.constData(), nullptr,
                                   PA_VOLUME_INVALID, nullptr, nullptr));
    }
}

}  // namespace sayloft
