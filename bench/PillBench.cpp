// SPDX-License-Identifier: MIT
// What the pill costs: hidden over a minute, beside an empty program whose timer fires 60 times a
// second, and shown with a level that moves, beside a window of its size with one grey area.
#include "bench/BenchMain.h"
#include "bench/Result.h"
#include "overlay/FrameTimer.h"
#include "overlay/PillGeometry.h"
#include "overlay/PillOverlay.h"
#include "platform/linux/WindowEffectsX11.h"
#include "tests/support/Compositor.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <stdexcept>
#include <vector>

#include <time.h>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto hiddenFor = 60s;
constexpr auto shownFor = 20s;

double processorMs() {
    timespec used = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return 1e3 * static_cast<double>(used.tv_sec) + 1e-6 * static_cast<double>(used.tv_nsec);
}

/// Times how long the drawing of a window takes, until it has been handed to the server.
class TimedApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (event->type() != QEvent::UpdateRequest)
            return QApplication::notify(receiver, event);
        const auto begin = Clock::now();
        const bool result = QApplication::notify(receiver, event);
        frames.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
        return result;
    }

    std::vector<double> frames;  ///< milliseconds
};

/// What a window costs of which nearly nothing is drawn.
class GreyWindow : public QWidget {
public:
    GreyWindow() {
        setWindowFlags(Qt::BypassWindowManagerHint | Qt::FramelessWindowHint);
        setAttribute(Qt::WA_TranslucentBackground);
        setFixedSize(static_cast<int>(PillGeometry::viewW), static_cast<int>(PillGeometry::viewH));
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), Qt::gray); }
};

struct Stretch {
    double processorMs;
    std::vector<double> frames;
};

Stretch measure(TimedApplication& application, std::chrono::seconds duration) {
    application.frames.clear();
    const double before = processorMs();
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
    return {processorMs() - before, application.frames};
}

std::string percentOfACore(double milliseconds, std::chrono::seconds duration) {
    const double whole = std::chrono::duration<double, std::milli>(duration).count();
    return describe(milliseconds, 1, "ms") + " (" + describe(100 * milliseconds / whole, 2, "%") +
           ")";
}

double percentile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values.at(static_cast<std::size_t>(part * static_cast<double>(values.size() - 1)));
}

void reportHidden(const Stretch& hidden, const Stretch& timer, int ticks) {
    print({.name = "pill hidden: processor time in 60 s",
           .value = percentOfACore(hidden.processorMs, hiddenFor),
           .peer = "empty, 60 Hz timer",
           .peerValue = percentOfACore(timer.processorMs, hiddenFor)});
    print({.name = "pill hidden: frames drawn",
           .value = std::to_string(hidden.frames.size()),
           .peer = "ticks of that timer",
           .peerValue = std::to_string(ticks)});
}

std::string framesASecond(const Stretch& shown) {
    return describe(static_cast<double>(shown.frames.size()) / shownFor.count(), 1, "");
}

std::string frameTimes(const Stretch& shown) {
    return describe(percentile(shown.frames, 0.5), 2, "ms") + ", " +
           describe(percentile(shown.frames, 0.99), 2, "ms");
}

void reportShown(const Stretch& shown, const Stretch& window) {
    const std::string peer = "grey window";
    print({.name = "pill shown: processor time in 20 s",
           .value = percentOfACore(shown.processorMs, shownFor),
           .peer = peer,
           .peerValue = percentOfACore(window.processorMs, shownFor)});
    print({.name = "pill shown: frames a second",
           .value = framesASecond(shown),
           .peer = peer,
           .peerValue = framesASecond(window)});
    print({.name = "pill shown: a frame, median and 99 %",
           .value = frameTimes(shown),
           .peer = peer,
           .peerValue = frameTimes(window)});
}

/// Drawn as often as the pill.
Stretch measureGreyWindow(TimedApplication& application) {
    GreyWindow window;
    window.show();
    FrameTimer frames([&window] { window.update(); });
    frames.start();
    return measure(application, shownFor);
}

void runBench(TimedApplication& application, const test::XServer& display) {
    const test::Compositor compositor(display);
    Stretch timer;
    int ticks = 0;
    {
        QTimer empty;
        empty.setTimerType(Qt::PreciseTimer);
        empty.callOnTimeout([&ticks] { ++ticks; });
        // QTimer has whole milliseconds only: 58.8 times a second.
        empty.start(17);
        timer = measure(application, hiddenFor);
    }
    WindowEffectsX11 effects;
    double phase = 0;
    PillOverlay pill([&phase] { return 0.5 + 0.5 * std::sin(phase += 0.1); }, effects);
    if (!test::waitUntil([&] { return !pill.isTicking(); }))
        throw std::runtime_error("the hidden pill does not rest");
    reportHidden(measure(application, hiddenFor), timer, ticks);

    pill.setActive(true);
    if (!test::waitUntil([&] { return pill.view().pill().presence > 0.99; }))
        throw std::runtime_error("the pill does not appear");
    const Stretch shown = measure(application, shownFor);
    pill.setActive(false);
    if (!test::waitUntil([&] { return !pill.isTicking(); }))
        throw std::runtime_error("the pill does not go");
    reportShown(shown, measureGreyWindow(application));
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMainWithoutApplication(argv[0], [&] {
        const sayloft::test::XServer display;
        const sayloft::test::WindowManager windowManager(display);
        sayloft::bench::TimedApplication application(argc, argv);
        sayloft::bench::runBench(application, display);
    });
}
