// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SystemSounds.h"
#include "platform/linux/PulseConnection.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace sayloft {

/// Plays the WAV files of a folder by name. They are uploaded once to every sound server that is
/// connected to, so that playing is one message; without a server there is silence.
class SystemSoundsPulse : public SystemSounds {
public:
    /// Reads `<folder>/Pop.wav` and `<folder>/Tink.wav`: PCM of 16 bits. A file that cannot be read
    /// is a silent sound.
    explicit SystemSoundsPulse(const QString& folder);
    ~SystemSoundsPulse() override;
    SystemSoundsPulse(const SystemSoundsPulse&) = delete;
    SystemSoundsPulse& operator=(const SystemSoundsPulse&) = delete;

    void play(const QString& name) override;

private:
    struct Sound {
        QByteArray sampleName;  ///< the server's name for it
        pa_sample_spec format{};
        std::vector<std::int16_t> samples;
    };
    static std::optional<Sound> read(const QString& folder, const QString& name);
    static void onState(pa_stream* stream, void* sound);

    void uploadAll(pa_context* context);

    std::map<QString, Sound> m_sounds;   ///< filled by the constructor, then only read
    std::vector<PulseStream> m_uploads;  ///< with the mainloop's lock held
    PulseConnection m_connection;        ///< ends first, and the uploads with it
};

}  // namespace sayloft
