// SPDX-License-Identifier: MIT
// How long it takes from the start of a recording to the first sample, against parec starting cold:
// ours from Recorder::start() to the first fragment in the program, parec's from the start of the
// process to its first byte of output. All take turns on one private server.
#include "audio/Recorder.h"
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "platform/linux/AudioInputPulse.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TempHome.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WatchedAudioInput.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace sayloft {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 21;

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

double startRecorder(Recorder& recorder, const test::WatchedAudioInput& input) {
    const auto begin = Clock::now();
    recorder.start();
    if (!test::waitUntil([&input] { return input.firstSample().has_value(); }))
        throw std::runtime_error("the recorder hears nothing");
    const double wait = milliseconds(*input.firstSample() - begin);
    recorder.stop()->waitUntilFinished();
    return wait;
}

double startParec(QStringList arguments) {
    arguments << QStringLiteral("--device=builtin") << QStringLiteral("--rate=16000")
              << QStringLiteral("--channels=1") << QStringLiteral("--format=s16le");
    const auto begin = Clock::now();
    test::ChildProgram parec(QStringLiteral("parec"), arguments);
    if (!parec.process().waitForReadyRead(10000))
        throw std::runtime_error("parec hears nothing");
    return milliseconds(Clock::now() - begin);
}

void compare() {
    const test::TempHome home;
    const test::SoundServer server;
    test::WatchedAudioInput input;
    input.framesPerBuffer = 16;
    Recorder recorder(input);
    if (!test::waitUntil([&input] { return !input.devices().empty(); }))
        throw std::runtime_error("there is no microphone");

    std::vector<double> ours;
    std::vector<double> lowLatency;
    std::vector<double> asItIs;
    // Who follows whom matters to the server, so each takes every place in the order.
    for (int round = 0; round < rounds; ++round) {
        for (int turn = 0; turn < 3; ++turn) {
            switch ((round + turn) % 3) {
                case 0:
                    ours.push_back(startRecorder(recorder, input));
                    break;
                case 1:
                    lowLatency.push_back(startParec({QStringLiteral("--latency-msec=20")}));
                    break;
                default:
                    asItIs.push_back(startParec({}));
            }
        }
    }
    const std::string name = "start of recording to first sample";
    bench::printMilliseconds(name, ours, "parec --latency-msec=20, cold", lowLatency);
    bench::printMilliseconds(name, ours, "parec, cold", asItIs);
}

}  // namespace
}  // namespace sayloft

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::compare);
}
