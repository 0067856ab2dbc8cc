// SPDX-License-Identifier: MIT
// From letting the chord go after a spoken sentence to its text in an editor that somebody else
// wrote: the program as it is installed, with its helper and the starter model. In turns with it,
// the same recording by hand: curl posts it to another such helper, xclip takes the clipboard and
// xdotool presses the paste key.
#include "bench/BenchMain.h"
#include "bench/ByHand.h"
#include "bench/EditorTitle.h"
#include "bench/Result.h"
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SpeechSamples.h"
#include "tests/endtoend/DictationDesk.h"

#include <QTemporaryDir>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;
using Clock = EditorTitle::Clock;

constexpr int rounds = 15;
/// Longer than the program needs to bring the clipboard back.
constexpr auto rest = 700ms;

class Comparison {
public:
    void run() {
        m_desk.startSayloft();
        // The program ends every helper that it finds when it starts.
        m_helper = std::make_unique<helper::test::StarterServer>();
        // The first of each loads libraries and caches.
        static_cast<void>(dictate());
        static_cast<void>(doByHand());
        for (int round = 0; round < rounds; ++round) {
            ours.push_back(dictate());
            theirs.push_back(doByHand());
        }
    }

    [[nodiscard]] double seconds() const { return helper::test::secondsOf(m_sentence); }

    std::vector<double> ours;
    std::vector<double> theirs;

private:
    [[nodiscard]] double dictate() {
        m_desk.hold();
        m_desk.room().play(m_sentence.file);
        const auto released = Clock::now();
        m_desk.letGo();
        const double taken = untilText(released);
        m_dictated += 1;
        if (!m_desk.waitForTranscripts(m_dictated))
            throw std::runtime_error("the log lacks a transcript");
        readBack(m_desk.transcripts().last());
        return taken;
    }

    /// Each recording is new to the other helper, which knows the last one that it has heard.
    [[nodiscard]] double doByHand() {
        double taken = 0;
        ByHand({.recording = m_desk.lastRecording(), .port = m_helper->port()})
            .run(m_desk.display().environment(),
                 [&](Clock::time_point started) { taken = untilText(started); });
        readBack(QString::fromStdString(
            m_helper->transcribe(helper::test::wavOf({m_desk.lastRecording(), {}}))));
        return taken;
    }

    [[nodiscard]] double untilText(Clock::time_point start) const {
        const Clock::duration taken = m_title.waitUntilModified() - start;
        return std::chrono::duration<double, std::milli>(taken).count();
    }

    /// The title tells when, this tells what.
    void readBack(const QString& text) {
        std::this_thread::sleep_for(rest);
        m_text += text;
        if (text.isEmpty() || m_desk.editor().textOnce(m_text) != m_text)
            throw std::runtime_error("the editor has another text than " + m_text.toStdString());
        m_title.waitUntilSaved();
    }

    test::DictationDesk m_desk;
    EditorTitle m_title;
    std::unique_ptr<helper::test::StarterServer> m_helper;
    QTemporaryDir m_directory;
    helper::test::SpeechSample m_sentence =
        helper::test::speak(m_directory, "i would like a cup of coffee");
    QString m_text;
    qsizetype m_dictated = 0;
};

void runBench() {
    Comparison comparison;
    comparison.run();
    printMilliseconds(
        "chord release to text in mousepad, " + describe(comparison.seconds(), 1, "s of speech"),
        comparison.ours, "curl + xclip + xdotool", comparison.theirs);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
