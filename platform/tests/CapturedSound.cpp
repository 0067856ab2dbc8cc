// SPDX-License-Identifier: MIT
#include "platform/tests/CapturedSound.h"

#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <stdexcept>

#include <sndfile.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

struct CloseSoundFile {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SoundFile = std::unique_ptr<SNDFILE, CloseSoundFile>;

double differenceAt(const float* spoken, const float* heard, std::size_t count) {
    const auto squared = [](float a, float b) { return double{a - b} * double{a - b}; };
    return std::inner_product(spoken, spoken + count, heard, 0.0, std::plus<>(), squared);
}

}  // namespace

AudioCaptureRequest CapturedSound::request(std::optional<AudioDeviceId> device,
                                           int framesPerBuffer) {
    return {.device = device,
            .framesPerBuffer = framesPerBuffer,
            .onBuffer = [this](const AudioBuffer& buffer) { add(buffer); },
            .onEnd = [this](const QString& /*error*/) { ++m_ends; }};
}

void CapturedSound::add(const AudioBuffer& buffer) {
    const std::lock_guard lock(m_mutex);
    if (m_sizes.empty())
        m_firstBuffer = Clock::now();
    if (m_ends > 0)
        m_lateBuffer = true;
    m_sizes.push_back(buffer.frames);
    m_samples.insert(m_samples.end(), buffer.samples,
                     buffer.samples + std::ptrdiff_t{buffer.frames} * buffer.format.channels);
}

std::vector<float> CapturedSound::samples() const {
    const std::lock_guard lock(m_mutex);
    return m_samples;
}

std::size_t CapturedSound::frames() const {
    const std::lock_guard lock(m_mutex);
    return std::accumulate(
        m_sizes.begin(), m_sizes.end(), std::size_t{0},
        [](std::size_t sum, int size) { return sum + static_cast<std::size_t>(size); });
}

std::vector<int> CapturedSound::bufferSizes() const {
    const std::lock_guard lock(m_mutex);
    return m_sizes;
}

float CapturedSound::peak() const {
    float peak = 0;
    for (const float sample : samples())
        peak = std::max(peak, std::abs(sample));
    return peak;
}

CapturedSound::Clock::time_point CapturedSound::firstBuffer() const {
    const std::lock_guard lock(m_mutex);
    return m_firstBuffer;
}

bool CapturedSound::waitForFrames(std::size_t count) const {
    return waitUntil([this, count] { return frames() >= count; });
}

bool CapturedSound::waitForEnd(std::chrono::milliseconds deadline) const {
    return waitUntil([this] { return m_ends > 0; }, deadline);
}

void CapturedSound::clear() {
    const std::lock_guard lock(m_mutex);
    m_samples.clear();
    m_sizes.clear();
    m_ends = 0;
}

void writeWav(const QString& path, const std::vector<std::int16_t>& samples, int sampleRate) {
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const SoundFile file(sf_open(path.toLocal8Bit().constData(), SFM_WRITE, &info));
    const auto count = static_cast<sf_count_t>(samples.size());
    if (!file || sf_write_short(file.get(), samples.data(), count) != count)
        throw std::runtime_error("cannot write " + path.toStdString());
}

std::vector<float> readWav(const QString& path) {
    SF_INFO info{};
    const SoundFile file(sf_open(path.toLocal8Bit().constData(), SFM_READ, &info));
    if (!file || info.channels != 1)
        throw std::runtime_error("cannot read " + path.toStdString());
    std::vector<float> samples(static_cast<std::size_t>(info.frames));
    sf_read_float(file.get(), samples.data(), info.frames);
    return samples;
}

double signalToNoise(const std::vector<float>& spoken, const std::vector<float>& heard) {
    if (heard.size() < spoken.size())
        return -std::numeric_limits<double>::infinity();
    const auto loudest = std::max_element(
        spoken.begin(), spoken.end(), [](float a, float b) { return std::abs(a) < std::abs(b); });
    const std::size_t count = 800;
    const auto from =
        std::min(static_cast<std::size_t>(loudest - spoken.begin()), spoken.size() - count);
    std::size_t best = 0;
    double least = std::numeric_limits<double>::max();
    for (std::size_t offset = 0; offset + spoken.size() <= heard.size(); ++offset) {
        const double difference = differenceAt(&spoken[from], &heard[offset + from], count);
        if (difference < least) {
            least = difference;
            best = offset;
        }
    }
    const double signal = std::inner_product(spoken.begin(), spoken.end(), spoken.begin(), 0.0);
    const double noise = differenceAt(spoken.data(), &heard[best], spoken.size());
    return 10 * std::log10(signal / std::max(noise, 1e-12));
}

}  // namespace sayloft::test
