// SPDX-License-Identifier: MIT
// How much of what is said is lost at the beginning: from the chord's last key to the first sound
// in the recording of the real program, against parec, from its start to the first sound that it
// writes. The room is full of noise that is unlike itself everywhere, so each recording tells when
// it was begun. All take turns on one private server.
#include "bench/BenchMain.h"
#include "bench/FocusedWindow.h"
#include "bench/ReleaseRig.h"
#include "bench/Result.h"
#include "bench/RoomClock.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/WaitUntil.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;
using Clock = RoomClock::Clock;

constexpr int rounds = 21;
/// Of a recording, to find it in what the room has heard: 0.2 s.
constexpr std::size_t enough = 3200;
constexpr qsizetype enoughBytes = 6400;

test::Samples samplesIn(const QByteArray& raw) {
    test::Samples samples(static_cast<std::size_t>(raw.size()) / sizeof(std::int16_t));
    std::memcpy(samples.data(), raw.constData(), samples.size() * sizeof(std::int16_t));
    return samples;
}

/// Plays into the room for ten minutes.
test::ChildProgram startNoise(const Desktop& desktop) {
    const QString file = desktop.path(QStringLiteral("noise.wav"));
    test::writeSound(file, test::noise(std::size_t{16000} * 60 * 10));
    return desktop.room().startPlaying(file);
}

class Comparison {
public:
    void run() {
        static_cast<void>(dictate());
        // Who follows whom matters to the server, so each takes every place in the order.
        for (int round = 0; round < rounds; ++round) {
            for (int turn = 0; turn < 3; ++turn)
                measure((round + turn) % 3);
        }
    }

    std::vector<double> ours;
    std::vector<double> lowLatency;
    std::vector<double> asItIs;

private:
    void measure(int which) {
        if (which == 0)
            ours.push_back(dictate());
        else if (which == 1)
            lowLatency.push_back(startParec({QStringLiteral("--latency-msec=20")}));
        else
            asItIs.push_back(startParec({}));
    }

    [[nodiscard]] double dictate() {
        // The microphone stays open for a moment after a dictation.
        if (!test::waitUntil([this] { return !isRecording(); }))
            throw std::runtime_error("the microphone stays open");
        m_window.press(Keycode::shiftLeft);
        const auto begin = Clock::now();
        m_window.press(Keycode::superLeft);
        std::this_thread::sleep_for(ReleaseRig::hold);
        m_window.release(Keycode::superLeft);
        m_window.release(Keycode::shiftLeft);
        if (!m_window.waitForPasteKey(10s))
            throw std::runtime_error("no paste key came");
        const QString recording =
            m_rig.desktop().home() + QStringLiteral("/.sayloft/tmp/sayloft_rec.wav");
        const double wait = untilFirstSoundOf(test::readSound(recording), begin);
        std::this_thread::sleep_for(ReleaseRig::rest);
        return wait;
    }

    [[nodiscard]] double startParec(QStringList arguments) {
        arguments << QStringLiteral("--device=builtin") << QStringLiteral("--rate=16000")
                  << QStringLiteral("--channels=1") << QStringLiteral("--format=s16le");
        const auto begin = Clock::now();
        test::ChildProgram parec(QStringLiteral("parec"), arguments);
        QByteArray written;
        while (written.size() < enoughBytes) {
            if (!parec.process().waitForReadyRead(10000))
                throw std::runtime_error("parec hears nothing");
            written += parec.standardOutput();
        }
        test::turnEventLoopFor(100ms);
        return untilFirstSoundOf(samplesIn(written), begin);
    }

    [[nodiscard]] double untilFirstSoundOf(test::Samples recording, Clock::time_point begin) {
        if (recording.size() < enough)
            throw std::runtime_error("only " + std::to_string(recording.size()) +
                                     " samples were recorded");
        recording.resize(enough);
        return std::chrono::duration<double, std::milli>(m_clock.beginOf(recording) - begin)
            .count();
    }

    [[nodiscard]] bool isRecording() const {
        return m_rig.desktop()
            .room()
            .list(QStringLiteral("source-outputs"))
            .contains("application.process.binary = \"sayloft\"");
    }

    ReleaseRig m_rig;
    FocusedWindow m_window;
    const test::ChildProgram m_player = startNoise(m_rig.desktop());
    RoomClock m_clock;
};

void runBench() {
    Comparison comparison;
    comparison.run();
    const std::string name = "chord down to first recorded sound";
    printMilliseconds(name, comparison.ours, "parec --latency-msec=20, cold",
                      comparison.lowLatency);
    printMilliseconds(name, comparison.ours, "parec, cold", comparison.asItIs);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
