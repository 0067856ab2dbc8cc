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
using Resample = std::function<Sound(const Sound&)>;

constexpr double fromRate = 48000;
constexpr double toRate = 16000;
constexpr std::size_t framesPerBuffer = 960;
constexpr int rounds = 11;

Sound tone(double frequency, double seconds) {
    Sound sound(static_cast<std::size_t>(fromRate * seconds));
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<float>(
            0.5 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / fromRate));
    return sound;
}

/// As the recorder does it: in buffers of 20 ms.
Sound byUs(const Sound& sound) {
    auto resampler = MonoResampler::create({.sampleRate = fromRate, .channels = 1}, toRate);
    Sound result;
    const auto append = [&result](std::span<const float> part) {
        result.insert(result.end(), part.begin(), part.end());
    };
    Sound buffer(framesPerBuffer);
    for (std::size_t at = 0; at < sound.size(); at += framesPerBuffer) {
        const std::size_t frames = std::min(framesPerBuffer, sound.size() - at);
        std::copy_n(sound.data() + at, frames, buffer.data());
        append(resampler->convert({.samples = buffer.data(),
                                   .frames = static_cast<int>(frames),
                                   .format = {.sampleRate = fromRate, .channels = 1}}));
    }
    append(resampler->flush());
    return result;
}

/// A sound in a file as sox reads it.
class SoundFile {
public:
    explicit SoundFile(const Sound& sound) {
        test::writeFile(path(), QByteArray(reinterpret_cast<const char*>(sound.data()),
                                           static_cast<qsizetype>(sound.size() * sizeof(float))));
    }

    /// Runs sox; `to` names the output.
    void resample(const QStringList& to) const {
        const QStringList from{QStringLiteral("-r"), QStringLiteral("48000"), QStringLiteral("-c"),
                               QStringLiteral("1"), path()};
        test::run(QStringLiteral("sox"), from + to + rate);
    }

    [[nodiscard]] QString path(const char* name = "from.f32") const {
        return m_directory.filePath(QLatin1String(name));
    }

private:
    static inline const QStringList rate{QStringLiteral("rate"), QStringLiteral("16000")};
    QTemporaryDir m_directory;
};

Sound bySox(const Sound& sound) {
    const SoundFile file(sound);
    const QString to = file.path("to.f32");
    file.resample({to});
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

/// Of this process or of all children that it has waited for.
double processorMs(int who) {
    rusage used{};
    ::getrusage(who, &used);
    double milliseconds = 0;
    for (const timeval& time : {used.ru_utime, used.ru_stime})
        milliseconds +=
            1e3 * static_cast<double>(time.tv_sec) + 1e-3 * static_cast<double>(time.tv_usec);
    return milliseconds;
}

double processorMsOf(int who, const std::function<void()>& act) {
    const double before = processorMs(who);
    act();
    return processorMs(who) - before;
}

/// Ours in memory, as it is used. Sox, which starts anew every time, has its input in the system's
/// cache and throws its output away; only what it uses itself counts.
void compareSpeed(const Sound& sound) {
    const SoundFile file(sound);
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int round = 0; round < rounds; ++round) {
        ours.push_back(processorMsOf(RUSAGE_SELF, [&] { static_cast<void>(byUs(sound)); }));
        theirs.push_back(
            processorMsOf(RUSAGE_CHILDREN, [&] { file.resample({QStringLiteral("-n")}); }));
    }
    printMilliseconds("resampler, 48 to 16 kHz: processor time for 300 s", ours, "sox", theirs);
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
    compareSpeed(tone(middle, 300));
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
