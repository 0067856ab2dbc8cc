// SPDX-License-Identifier: MIT
// From letting the chord go to the paste key in the focused window, with a speech server that
// answers at once: what a dictation takes beside the recognition. In turns with it, the same steps
// by hand: curl posts the same recording to the same server, xclip takes the clipboard and xdotool
// presses the paste key, from the start of curl on.
#include "bench/BenchMain.h"
#include "bench/FocusedWindow.h"
#include "bench/ReleaseRig.h"
#include "bench/Result.h"
#include "tests/support/RawHttp.h"

#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;
using Clock = FocusedWindow::Clock;

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

/// What lies between the steps of every run.
struct Times {
    std::vector<double> whole;
    std::vector<double> untilRequest;
    std::vector<double> untilAnswer;
    std::vector<double> untilClipboard;
    std::vector<double> untilKey;
    int keysTooEarly = 0;  ///< paste keys that came while the clipboard still held what was before

    void add(Clock::time_point start, InstantBundle::Request request, Clock::time_point clipboard,
             Clock::time_point key) {
        if (clipboard < request.arrived) {
            ++keysTooEarly;
            clipboard = key;
        }
        whole.push_back(milliseconds(key - start));
        untilRequest.push_back(milliseconds(request.arrived - start));
        untilAnswer.push_back(milliseconds(request.answered - request.arrived));
        untilClipboard.push_back(milliseconds(clipboard - request.answered));
        untilKey.push_back(milliseconds(key - clipboard));
    }
};

class Comparison {
public:
    void run() {
        // The first of each loads libraries and caches.
        Times warmUp;
        dictate(warmUp);
        doByHand(warmUp);
        for (int round = 0; round < ReleaseRig::rounds; ++round) {
            dictate(ours);
            doByHand(theirs);
        }
    }

    Times ours;
    Times theirs;

private:
    void dictate(Times& times) {
        m_window.press(Keycode::shiftLeft);
        m_window.press(Keycode::superLeft);
        std::this_thread::sleep_for(ReleaseRig::hold);
        const auto released = Clock::now();
        m_window.release(Keycode::superLeft);
        m_window.release(Keycode::shiftLeft);
        finish(times, released);
    }

    void doByHand(Times& times) {
        m_rig.doByHand(
            {.selection = QStringLiteral("clipboard"), .pasteKey = QStringLiteral("ctrl+v")},
            [&](Clock::time_point started) { finish(times, started); });
    }

    void finish(Times& times, Clock::time_point start) {
        const auto key = m_window.waitForPasteKey(10s);
        if (!key)
            throw std::runtime_error(std::string("no paste key came, the server is ") +
                                     (test::isListening(8090) ? "there: " : "gone: ") +
                                     m_rig.sayloft().log().toStdString());
        std::this_thread::sleep_for(ReleaseRig::rest);
        times.add(start, m_rig.bundle().lastRequest(++m_requests), m_window.clipboardTaken(), *key);
    }

    ReleaseRig m_rig;
    FocusedWindow m_window;
    int m_requests = 0;
};

void printStep(const char* name, const std::vector<double>& ours,
               const std::vector<double>& theirs) {
    std::printf("  %-44s %28s %28s\n", name, describeMilliseconds(ours).c_str(),
                describeMilliseconds(theirs).c_str());
}

void report(const Times& ours, const Times& theirs) {
    std::printf("from the chord's release to the paste key, medians (least to most) of %d runs\n",
                ReleaseRig::rounds);
    std::printf("  %-44s %28s %28s\n", "", "sayloft", "curl + xclip + xdotool");
    printStep("recording's end, until the request is there", ours.untilRequest,
              theirs.untilRequest);
    printStep("until it is answered", ours.untilAnswer, theirs.untilAnswer);
    printStep("snapshot, until the clipboard is taken", ours.untilClipboard, theirs.untilClipboard);
    printStep("until the paste key arrives", ours.untilKey, theirs.untilKey);
    printStep("all of it", ours.whole, theirs.whole);
    std::printf("  %-44s %28d %28d\n", "paste keys before the clipboard was taken",
                ours.keysTooEarly, theirs.keysTooEarly);
    std::printf(
        "Sayloft's first step contains the 100 ms for which the recording runs on after the\n"
        "release; by hand, it is the start of a shell and of curl with a finished recording, and\n"
        "nobody keeps what was on the clipboard.\n");
    printMilliseconds("chord release to paste key (100 ms: recording)", ours.whole,
                      "curl + xclip + xdotool", theirs.whole);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, [] {
        sayloft::bench::Comparison comparison;
        comparison.run();
        sayloft::bench::report(comparison.ours, comparison.theirs);
    });
}
