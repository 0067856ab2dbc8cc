// SPDX-License-Identifier: MIT
// How long the starter takes for a second of speech, against the recogniser's own command-line tool
// pocketsphinx_batch on the same files in the same run. Ours is measured as the app sees it, from
// sending the request to the end of the answer; the tool's is the decoding time that it reports,
// which leaves out loading the model.
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SpeechSamples.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

#include <time.h>
#include <unistd.h>

namespace sayloft::helper {
namespace {

using test::Duration;
using test::SpeechSample;

constexpr int rounds = 20;

double secondsOn(clockid_t clock) {
    timespec now = {};
    ::clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// The wall and another program's processor time from here on.
class Stopwatch {
public:
    explicit Stopwatch(qint64 pid) {
        if (::clock_getcpuclockid(static_cast<pid_t>(pid), &m_processor) != 0)
            throw std::runtime_error("the helper's processor time cannot be read");
        m_start = now();
    }

    [[nodiscard]] Duration elapsed() const {
        return {now().processor - m_start.processor, now().wall - m_start.wall};
    }

private:
    [[nodiscard]] Duration now() const {
        return {secondsOn(m_processor), secondsOn(CLOCK_MONOTONIC)};
    }

    clockid_t m_processor = {};
    Duration m_start;
};

// What one file, or all of them together, took in each round.
struct Row {
    std::string name;
    double length = 0;  ///< seconds of speech
    std::vector<Duration> ours;
    std::vector<Duration> theirs;
};

double medianOf(const std::vector<Duration>& durations, double Duration::*part) {
    std::vector<double> values;
    std::transform(durations.begin(), durations.end(), std::back_inserter(values),
                   [part](const Duration& duration) { return duration.*part; });
    return bench::medianOf(std::move(values));
}

void add(Duration& sum, const Duration& duration) {
    sum.processor += duration.processor;
    sum.wall += duration.wall;
}

// Takes turns within a round, so that a busy moment of the machine hits both. The last row is the
// sum of the others.
void runRound(const test::StarterServer& server, const std::vector<SpeechSample>& samples,
              std::vector<Row>& rows) {
    Duration ours;
    Duration theirs;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::string wav = test::wavOf(samples[i]);
        const Stopwatch watch(server.program().pid());
        static_cast<void>(server.transcribe(wav));
        rows[i].ours.push_back(watch.elapsed());
        rows[i].theirs.push_back(test::runCommandLineTool({samples[i]}).decoding.front());
        add(ours, rows[i].ours.back());
        add(theirs, rows[i].theirs.back());
    }
    rows.back().ours.push_back(ours);
    rows.back().theirs.push_back(theirs);
}

void print(const std::vector<Row>& rows) {
    std::printf("seconds of decoding per second of speech, medians of %d runs\n", rounds);
    std::printf("%-40s %7s | %-17s | %-17s\n", "", "", "wall time", "processor time");
    std::printf("%-40s %7s | %8s %8s | %8s %8s\n", "speech", "length", "starter", "batch",
                "starter", "batch");
    for (const Row& row : rows) {
        std::printf("%-40.40s %6.2fs | %8.3f %8.3f | %8.3f %8.3f\n", row.name.c_str(), row.length,
                    medianOf(row.ours, &Duration::wall) / row.length,
                    medianOf(row.theirs, &Duration::wall) / row.length,
                    medianOf(row.ours, &Duration::processor) / row.length,
                    medianOf(row.theirs, &Duration::processor) / row.length);
    }
}

void printResult(const Row& row, const char* what, double Duration::*part) {
    const auto ratio = [&](const std::vector<Duration>& durations) {
        return bench::describe(medianOf(durations, part) / row.length, 3, "s");
    };
    bench::print({.name = std::string("starter, ") + what + " per second of speech",
                  .value = ratio(row.ours),
                  .peer = "pocketsphinx_batch",
                  .peerValue = ratio(row.theirs)});
}

void runBench() {
    const QTemporaryDir directory;
    std::vector<SpeechSample> samples = test::recordedSpeech();
    for (const char* sentence : {"i would like a cup of coffee", "the weather is nice today"})
        samples.push_back(test::speak(directory, sentence));
    std::vector<Row> rows;
    double length = 0;
    for (const SpeechSample& sample : samples) {
        rows.push_back({sample.words, test::secondsOf(sample), {}, {}});
        length += rows.back().length;
    }
    rows.push_back({"all of it", length, {}, {}});
    const test::StarterServer server;
    // Not the first one: the server answers the last recording a second time without decoding.
    static_cast<void>(server.transcribe(test::wavOf(samples.back())));
    for (int round = 0; round < rounds; ++round)
        runRound(server, samples, rows);
    print(rows);
    printResult(rows.back(), "wall time", &Duration::wall);
    printResult(rows.back(), "processor time", &Duration::processor);
}

}  // namespace
}  // namespace sayloft::helper

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::helper::runBench);
}
