// SPDX-License-Identifier: MIT
#include "audio/WavFile.h"

#include <QFile>

#include <algorithm>
#include <cmath>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft {
namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

int openForUserAlone(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    // What others may read they may have open already.
    if (::lstat(name.constData(), &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        ::unlink(name.constData());
    return ::open(name.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, ownerOnly);
}

SF_INFO monoPcm16() {
    SF_INFO info = {};
    info.samplerate = static_cast<int>(WavFile::sampleRate);
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    return info;
}

}  // namespace

std::optional<WavFile> WavFile::create(const QString& path) {
    const int descriptor = openForUserAlone(path);
    if (descriptor < 0)
        return std::nullopt;
    SF_INFO info = monoPcm16();
    SNDFILE* const file = sf_open_fd(descriptor, SFM_WRITE, &info, SF_TRUE);
    if (file == nullptr) {
        ::close(descriptor);
        return std::nullopt;
    }
    sf_command(file, SFC_SET_UPDATE_HEADER_AUTO, nullptr, SF_TRUE);
    sf_command(file, SFC_UPDATE_HEADER_NOW, nullptr, 0);
    return WavFile(file);
}

bool WavFile::write(std::span<const float> samples) {
    m_pcm.resize(samples.size());
    std::transform(samples.begin(), samples.end(), m_pcm.begin(), toPcm16);
    const auto count = static_cast<sf_count_t>(m_pcm.size());
    return sf_write_short(m_file.get(), m_pcm.data(), count) == count;
}

std::int16_t WavFile::toPcm16(float sample) {
    constexpr float fullScale = 32768;
    if (std::isnan(sample))
        return 0;
    return static_cast<std::int16_t>(
        std::lrint(std::clamp(sample * fullScale, -fullScale, fullScale - 1)));
}

}  // namespace sayloft
