// SPDX-License-Identifier: MIT
#include "audio/WavFile.h"

#include "storage/Log.h"

#include <QFile>

#include <algorithm>
#include <cmath>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft {
namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
constexpr off_t headerSize = 44;

int openForUserAlone(const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    struct stat status {};
    // What others may read they may have open already.
    if (::lstat(name.constData(), &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
        ::unlink(name.constData());
    return ::open(name.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, ownerOnly);
}

void logInMemory() {
    logf(QStringLiteral("the recording cannot be written — it goes on in memory"));
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
    if (Sound file = open(descriptor))
        return WavFile(std::move(file), descriptor);
    logInMemory();
    return createInMemory();
}

std::optional<WavFile> WavFile::createInMemory() {
    auto memory = MemoryFile::create();
    if (!memory)
        return std::nullopt;
    const int descriptor = ::fcntl(memory->descriptor(), F_DUPFD_CLOEXEC, 0);
    Sound file = open(descriptor);
    if (!file)
        return std::nullopt;
    WavFile wav(std::move(file), descriptor);
    wav.m_memory = std::move(memory);
    return wav;
}

WavFile::Sound WavFile::open(int descriptor) {
    if (descriptor < 0)
        return nullptr;
    SF_INFO info = monoPcm16();
    // The library closes the descriptor even where it cannot open the file.
    Sound file(sf_open_fd(descriptor, SFM_WRITE, &info, SF_TRUE));
    if (!file)
        return nullptr;
    sf_command(file.get(), SFC_SET_UPDATE_HEADER_AUTO, nullptr, SF_TRUE);
    sf_command(file.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0);
    return sf_error(file.get()) == SF_ERR_NO_ERROR ? std::move(file) : nullptr;
}

bool WavFile::write(std::span<const float> samples) {
    std::vector<std::int16_t> pcm = std::exchange(m_pcm, {});
    pcm.resize(samples.size());
    std::transform(samples.begin(), samples.end(), pcm.begin(), toPcm16);
    const std::int64_t before = m_frames;
    bool isWritten = writePcm(pcm);
    if (!isWritten && moveToMemory())
        isWritten = writePcm(std::span(pcm).subspan(static_cast<std::size_t>(m_frames - before)));
    m_pcm = std::move(pcm);
    return isWritten;
}

bool WavFile::writePcm(std::span<const std::int16_t> samples) {
    const auto count = static_cast<sf_count_t>(samples.size());
    if (m_memory && m_frames + count > mostFramesInMemory)
        return false;
    const sf_count_t written = sf_write_short(m_file.get(), samples.data(), count);
    m_frames += std::max<sf_count_t>(written, 0);
    // A header that could not be brought up to date counts too: where it was to be is where the
    // next samples would go.
    return written == count && sf_error(m_file.get()) == SF_ERR_NO_ERROR;
}

bool WavFile::moveToMemory() {
    if (m_memory || m_frames > mostFramesInMemory)
        return false;
    std::optional<WavFile> copy = createInMemory();
    if (!copy || !copy->append(m_descriptor, m_frames))
        return false;
    logInMemory();
    *this = std::move(*copy);
    return true;
}

/// So many frames of another file as this one.
bool WavFile::append(int descriptor, std::int64_t frames) {
    std::vector<char> bytes(static_cast<std::size_t>(frames) * sizeof(std::int16_t));
    const auto size = static_cast<ssize_t>(bytes.size());
    if (::pread(descriptor, bytes.data(), bytes.size(), headerSize) != size ||
        sf_write_raw(m_file.get(), bytes.data(), size) != size)
        return false;
    m_frames += frames;
    return true;
}

std::int16_t WavFile::toPcm16(float sample) {
    constexpr float fullScale = 32768;
    if (std::isnan(sample))
        return 0;
    return static_cast<std::int16_t>(
        std::lrint(std::clamp(sample * fullScale, -fullScale, fullScale - 1)));
}

}  // namespace sayloft
