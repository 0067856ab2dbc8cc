// SPDX-License-Identifier: MIT
// The resampler against sox: how fast, how clean, how flat, and what is left of tones that the new
// rate cannot carry.
#include "audio/MonoResampler.h"
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/TempHome.h"

#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <numbers>
#include <span>
#include <string>
#include <vector>

#include <sys/resource.h>

namespace sayloft::bench {
namespace {

using Sound = std::vector<float>;
using Resample = std::function<Sound(Sound)>;

constexpr double fromRate = 48000;
constexpr double toRate = 16000;
constexpr std::size_t framesPerBuffer = 960;

Sound tone(double frequency, double seconds) {
    Sound sound(static_cast<std::size_t>(fromRate * seconds));
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<float>(
            0.5 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / fromRate));
    return sound;
}

/// As the recorder does it: in buffers of 20 ms.
Sound byUs(Sound sound) {
    auto resampler = MonoResampler::create({.sampleRate = fromRate, .channels = 1}, toRate);
    Sound result;
    const auto append = [&result](std::span<const float> part) {
        result.insert(result.end(), part.begin(), part.end());
    };
    for (std::size_t at = 0; at < sound.size(); at += framesPerBuffer) {
        const std::size_t frames = std::min(framesPerBuffer, sound.size() - at);
        append(resampler->convert({.samples = sound.data() + at,
                                   .frames = static_cast<int>(frames),
                                   .format = {.sampleRate = fromRate, .channels = 1}}));
    }
    append(resampler->flush());
    return result;
}

Sound bySox(const Sound& sound) {
    const QTemporaryDir directory;
    const QString from = directory.filePath(QStringLiteral("from.f32"));
    const QString to = directory.filePath(QStringLiteral("to.f32"));
    test::writeFile(from, QByteArray(reinterpret_cast<const char*>(sound.data()),
                                     static_cast<qsizetype>(sound.size() * sizeof(float))));
    test::run(QStringLiteral("sox"),
              {QStringLiteral("-r"), QStringLiteral("48000"), QStringLiteral("-c"),
               QStringLiteral("1"), from, QStringLiteral("-r"), QStringLiteral("16000"), to});
    const QByteArray bytes = test::readFile(to);
    Sound result(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    std::memcpy(result.data(), bytes.constData(), result.size() * sizeof(float));
    return result;
}

double decibels(double ratio) {
    return 20 * std::log10(std::max(ratio, 1e-10));
}

struct Fit {
    double amplitude;
    double residue;  ///< root mean square of what is no such tone
};

/// Without the beginning and the end, where the filter has not filled yet.
Fit fitTone(const Sound& whole, double frequency) {
    const std::size_t margin = whole.size() / 4;
    double sine = 0;
    double cosine = 0;
    const auto count = static_cast<double>(whole.size() - 2 * margin);
    const auto phase = [frequency](std::size_t i) {
        return 2 * std::numbers::pi * frequency * static_cast<double>(i) / toRate;
    };
    for (std::size_t i = margin; i < whole.size() - margin; ++i) {
        sine += whole[i] * std::sin(phase(i)) * 2 / count;
        cosine += whole[i] * std::cos(phase(i)) * 2 / count;
    }
    double squares = 0;
    for (std::size_t i = margin; i < whole.size() - margin; ++i) {
        const double rest = whole[i] - sine * std::sin(phase(i)) - cosine * std::cos(phase(i));
        squares += rest * rest / count;
    }
    return {.amplitude = std::hypot(sine, cosine), .residue = std::sqrt(squares)};
}

double rms(const Sound& whole) {
    const std::size_t margin = whole.size() / 4;
    double squares = 0;
    for (std::size_t i = margin; i < whole.size() - margin; ++i)
        squares += whole[i] * whole[i];
    return std::sqrt(squares / static_cast<double>(whole.size() - 2 * margin));
}

void compare(const std::string& name, const std::function<double(const Resample&)>& measure,
             const std::string& unit) {
    print({.name = "resampler, 48 to 16 kHz: " + name,
           .value = describe(measure(byUs), 1, unit),
           .peer = "sox",
           .peerValue = describe(measure(bySox), 1, unit)});
}

/// Of this process and of those that it has waited for.
double processorSeconds() {
    double seconds = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage used{};
        ::getrusage(who, &used);
        for (const timeval& time : {used.ru_utime, used.ru_stime})
            seconds += static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    }
    return seconds;
}

void runBench() {
    constexpr double middle = 1000;
    constexpr double high = 6500;
    constexpr double beyond = 10000;
    compare(
        "tone of 1 kHz over what is not it",
        [](const Resample& resample) {
            const Fit fit = fitTone(resample(tone(middle, 2)), middle);
            return decibels(fit.amplitude / std::sqrt(2) / fit.residue);
        },
        "dB");
    compare(
        "tone of 6.5 kHz, of its level",
        [](const Resample& resample) {
            return decibels(fitTone(resample(tone(high, 2)), high).amplitude / 0.5);
        },
        "dB");
    compare(
        "tone of 10 kHz, what is left",
        [](const Resample& resample) {
            return decibels(rms(resample(tone(beyond, 2))) * std::sqrt(2) / 0.5);
        },
        "dB");
    const Sound minutes = tone(middle, 300);
    compare(
        "processor time for 300 s",
        [&minutes](const Resample& resample) {
            const double before = processorSeconds();
            static_cast<void>(resample(minutes));
            return 1000 * (processorSeconds() - before);
        },
        "ms");
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
