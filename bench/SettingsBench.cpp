// SPDX-License-Identifier: MIT
// How long the settings window takes from the call that opens it until it is drawn, the first time
// and again, beside a window with one button; and what a refresh costs.
#include "bench/Result.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"
#include "ui/tests/OpenedSettings.h"

#include <QApplication>
#include <QPushButton>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <vector>

namespace sayloft::bench {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsOf(const std::function<void()>& act) {
    const auto begin = Clock::now();
    act();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

/// Notes when a window was drawn.
class DrawnWatch : public QObject {
public:
    explicit DrawnWatch(QWidget& window) : m_window(window) { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Paint && widget && widget->window() == &m_window)
            m_isDrawn = true;
        return false;
    }

    void wait() const {
        while (!m_isDrawn)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

private:
    QWidget& m_window;
    bool m_isDrawn = false;
};

double showButton() {
    return millisecondsOf([] {
        QWidget window;
        QPushButton button(QStringLiteral("Button"), &window);
        const DrawnWatch drawn(window);
        window.show();
        drawn.wait();
    });
}

double showAgain(const test::OpenedSettings& settings) {
    settings.window->hide();
    test::turnEventLoopFor(std::chrono::milliseconds(20));
    return millisecondsOf([&] {
        const DrawnWatch drawn(*settings.window);
        settings.app->openSettings();
        drawn.wait();
    });
}

std::vector<double> times(int count, const std::function<double()>& measure) {
    std::vector<double> values(static_cast<std::size_t>(count));
    std::generate(values.begin(), values.end(), measure);
    return values;
}

void runBench() {
    const std::string peer = "window with a button";
    const double firstButton = showButton();
    std::vector<double> buttons = times(20, showButton);
    test::OpenedSettings settings;
    settings.prepare("{}");
    const double first = millisecondsOf([&] {
        settings.app->openSettings();
        settings.findWindow();
        const DrawnWatch drawn(*settings.window);
        drawn.wait();
    });
    print({.name = "settings window: opened the first time",
           .value = describe(first, 1, "ms"),
           .peer = peer + ", the first of the program",
           .peerValue = describe(firstButton, 1, "ms")});
    print({.name = "settings window: opened again",
           .value = describeMilliseconds(times(20, [&] { return showAgain(settings); })),
           .peer = peer,
           .peerValue = describeMilliseconds(buttons)});
    const auto refresh = [&] {
        return millisecondsOf([&] { settings.app->windows->refreshSettings(); });
    };
    print({.name = "settings window: refreshed",
           .value = describe(medianOf(times(1000, refresh)), 3, "ms"),
           .peer = {},
           .peerValue = {}});
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    try {
        const sayloft::test::XServer display;
        const sayloft::test::WindowManager windowManager(display);
        const QApplication application(argc, argv);
        sayloft::bench::runBench();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_settings: %s\n", error.what());
        return 1;
    }
    return 0;
}
