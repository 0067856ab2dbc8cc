// SPDX-License-Identifier: MIT
// How long it takes from play() until "Pop" and "Tink" are heard in the room, against paplay
// starting cold with the same file: from the start of its process. All take turns on one private
// server, and all figures include the way through the microphone, some 20 ms. And how long play()
// keeps its caller, against pactl play-sample from its start to its end: it too asks the server to
// play what that has already.
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "platform/linux/AudioInputPulse.h"
#include "platform/linux/SystemSoundsPulse.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/SoundOnset.h"
#include "tests/support/SoundServer.h"
#include "tests/support/WaitUntil.h"

#include <QRegularExpression>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace sayloft {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int rounds = 40;
const QString sounds = QStringLiteral(SAYLOFT_BUNDLE_DIR "/Contents/Resources/sounds");

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// The server works in blocks of 20 ms: over all rounds, every moment of a block is met.
double timeUntilHeard(test::SoundOnset& room, int round, const std::function<void()>& play) {
    room.waitForSilence();
    std::this_thread::sleep_for(std::chrono::milliseconds(round % 20));
    const auto begin = Clock::now();
    play();
    if (!test::waitUntil([&room] { return room.onset().has_value(); }))
        throw std::runtime_error("nothing is heard");
    return milliseconds(*room.onset() - begin);
}

double timeOfPaplay(test::SoundOnset& room, int round) {
    std::unique_ptr<test::ChildProgram> paplay;
    const double time = timeUntilHeard(room, round, [&paplay] {
        paplay = std::make_unique<test::ChildProgram>(
            QStringLiteral("paplay"),
            QStringList{QStringLiteral("--latency-msec=20"), QStringLiteral("--device=room"),
                        sounds + QStringLiteral("/Pop.wav")});
    });
    if (!paplay->waitForEnd(std::chrono::seconds(10)))
        throw std::runtime_error("paplay does not end");
    return time;
}

/// The name that the server has the sound under.
QString sampleOf(const test::SoundServer& server, const QString& sound) {
    const QString samples = QString::fromUtf8(server.list(QStringLiteral("samples")));
    static const QRegularExpression name(QStringLiteral("Name: (sayloft-\\S*%1\\S*)").arg(sound));
    QString found = name.match(samples).captured(1);
    if (found.isEmpty())
        throw std::runtime_error("the server has no " + sound.toStdString());
    return found;
}

double timeOfPactl(const QString& sample) {
    const auto begin = Clock::now();
    test::run(QStringLiteral("pactl"),
              {QStringLiteral("play-sample"), sample, QStringLiteral("room")});
    return milliseconds(Clock::now() - begin);
}

void compare() {
    const test::SoundServer server;
    AudioInputPulse input;
    SystemSoundsPulse player(sounds);
    test::SoundOnset room(input);
    if (!test::waitUntil([&server] {
            return server.list(QStringLiteral("samples")).count("Name: sayloft-") == 2;
        }))
        throw std::runtime_error("the sounds were not taken in");

    const std::array names{QStringLiteral("Pop"), QStringLiteral("Tink")};
    std::array<std::vector<double>, 2> ours;
    std::vector<double> calls;
    std::vector<double> peer;
    std::vector<double> pactl;
    const QString sample = sampleOf(server, names.front());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            ours.at(i).push_back(timeUntilHeard(room, round, [&] {
                const auto begin = Clock::now();
                player.play(names.at(i));
                calls.push_back(milliseconds(Clock::now() - begin));
            }));
        }
        peer.push_back(timeOfPaplay(room, round));
        timeUntilHeard(room, round, [&] { pactl.push_back(timeOfPactl(sample)); });
    }
    for (std::size_t i = 0; i < names.size(); ++i)
        bench::printMilliseconds("play() of " + names.at(i).toStdString() + " to its sound",
                                 ours.at(i), "paplay, cold", peer);
    bench::print({.name = "play() itself, on the main thread",
                  .value = bench::describe(1000 * bench::medianOf(calls), 0, "us"),
                  .peer = "pactl play-sample, whole",
                  .peerValue = bench::describeMilliseconds(pactl)});
}

}  // namespace
}  // namespace sayloft

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::compare);
}
