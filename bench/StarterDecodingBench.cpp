// SPDX-License-Identifier: MIT
// How long the starter takes for a second of speech, against the recogniser's own command-line tool
// on the same files in the same run. Ours is measured as the app sees it: from sending the request
// to the end of the answer. The tool's is the decoding time that it reports itself, and apart from
// that the time from its start to its end.
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SpeechSamples.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace sayloft::helper {
namespace {

using Clock = std::chrono::steady_clock;
using test::SpeechSample;

constexpr int rounds = 20;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t half = values.size() / 2;
    return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

struct Row {
    SpeechSample sample;
    std::vector<double> ours;
    std::vector<double> theirs;
};

struct Totals {
    std::vector<double> ours;
    std::vector<double> theirs;
    std::vector<double> theirProgram;
};

// One round takes turns, so that a busy moment of the machine hits both.
void runRound(const test::StarterServer& server, std::vector<Row>& rows, Totals& totals) {
    std::vector<SpeechSample> samples;
    double ours = 0;
    for (Row& row : rows) {
        const std::string wav = test::wavOf(row.sample);
        const Clock::time_point start = Clock::now();
        static_cast<void>(server.transcribe(wav));
        row.ours.push_back(secondsSince(start));
        ours += row.ours.back();
        samples.push_back(row.sample);
    }
    const Clock::time_point start = Clock::now();
    const test::CommandLineRun tool = test::runCommandLineTool(samples);
    totals.theirProgram.push_back(secondsSince(start));
    double theirs = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i].theirs.push_back(tool.decodingSeconds[i]);
        theirs += tool.decodingSeconds[i];
    }
    totals.ours.push_back(ours);
    totals.theirs.push_back(theirs);
}

void print(const std::vector<Row>& rows, const Totals& totals) {
    std::printf("seconds of decoding per second of speech, medians of %d runs\n", rounds);
    std::printf("%-52s %7s %8s %18s\n", "speech", "length", "starter", "pocketsphinx_batch");
    double length = 0;
    for (const Row& row : rows) {
        const double seconds = test::secondsOf(row.sample);
        length += seconds;
        std::printf("%-52.52s %6.2fs %8.3f %18.3f\n", row.sample.words.c_str(), seconds,
                    median(row.ours) / seconds, median(row.theirs) / seconds);
    }
    std::printf("%-52s %6.2fs %8.3f %18.3f\n", "all of it", length, median(totals.ours) / length,
                median(totals.theirs) / length);
    std::printf("%-52s %6.2fs %8s %18.3f\n", "the whole program, loading included", length, "-",
                median(totals.theirProgram) / length);
}

void runBench() {
    const QTemporaryDir directory;
    std::vector<Row> rows;
    for (const SpeechSample& sample : test::recordedSpeech())
        rows.push_back({sample, {}, {}});
    for (const char* sentence : {"i would like a cup of coffee", "the weather is nice today"})
        rows.push_back({test::speak(directory, sentence), {}, {}});
    const test::StarterServer server;
    Totals totals;
    static_cast<void>(server.transcribe(test::wavOf(rows.front().sample)));
    for (int round = 0; round < rounds; ++round)
        runRound(server, rows, totals);
    print(rows, totals);
}

}  // namespace
}  // namespace sayloft::helper

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        sayloft::helper::runBench();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_starter_decoding: %s\n", error.what());
        return 1;
    }
    return 0;
}
