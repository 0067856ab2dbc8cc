// SPDX-License-Identifier: MIT
// How long each window takes from the call that opens it until it is drawn, the first time and
// again, beside a window with one button, all over fake services; and what a refresh of the
// settings costs with the real ones.
#include "bench/BenchMain.h"
#include "bench/RealSettings.h"
#include "bench/Result.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"
#include "ui/AppWindows.h"
#include "ui/DictWindowController.h"
#include "ui/OnboardWindowController.h"
#include "ui/SettingsWindowController.h"
#include "ui/tests/OpenedSettings.h"

#include <QApplication>
#include <QPushButton>

#include <algorithm>
#include <chrono>
#include <functional>
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

std::vector<double> times(int count, const std::function<double()>& measure) {
    std::vector<double> values(static_cast<std::size_t>(count));
    std::generate(values.begin(), values.end(), measure);
    return values;
}

std::vector<double> redrawButton(int count) {
    QWidget window;
    QPushButton button(QStringLiteral("Button"), &window);
    const DrawnWatch drawn(window);
    window.show();
    drawn.wait();
    return times(count, [&] { return millisecondsOf([&] { window.repaint(); }); });
}

using Open = std::function<QWidget*()>;

double show(const Open& open) {
    return millisecondsOf([&] {
        const DrawnWatch drawn(*open());
        drawn.wait();
    });
}

double showAgain(const Open& open) {
    open()->hide();
    test::turnEventLoopFor(std::chrono::milliseconds(20));
    return show(open);
}

const std::string peer = "window with a button";

/// The first time and again, of a program that has shown a window before.
void benchOpening(const std::string& name, const Open& open) {
    const double firstButton = showButton();
    const double first = show(open);
    print({.name = name + ": opened the first time",
           .value = describe(first, 1, "ms"),
           .peer = peer,
           .peerValue = describe(firstButton, 1, "ms")});
    printMilliseconds(name + ": opened again", times(20, [&] { return showAgain(open); }), peer,
                      times(20, showButton));
}

QByteArray dictionaryOf(int pairs) {
    QByteArrayList rows;
    for (int i = 0; i < pairs; ++i)
        rows.append(R"(["heard )" + QByteArray::number(i) + R"(","said )" + QByteArray::number(i) +
                    R"("])");
    return R"({"replacements":[)" + rows.join(',') + "]}";
}

AppWindows& windowsOf(const test::OpenedSettings& desk) {
    return dynamic_cast<AppWindows&>(*desk.app->windows);
}

void benchSettings() {
    test::OpenedSettings desk;
    desk.prepare("{}");
    benchOpening("settings window", [&] {
        desk.app->openSettings();
        return &windowsOf(desk).settingsWC->window();
    });
}

/// With the services that the program has.
void benchRefreshing(int headsets) {
    RealSettings desk(headsets);
    desk.app().openSettings();
    const auto refresh = [&] {
        return millisecondsOf([&] { desk.app().windows->refreshSettings(); });
    };
    const std::vector<double> refreshed = times(1000, refresh);
    print({.name =
               "settings window: refreshed, with " + std::to_string(headsets + 1) + " microphones",
           .value = describe(medianOf(refreshed), 3, "ms") + " (at most " +
                    describe(*std::max_element(refreshed.begin(), refreshed.end()), 3, "ms)"),
           .peer = peer + ", drawn again",
           .peerValue = describe(medianOf(redrawButton(1000)), 3, "ms")});
}

void benchDictionary(int pairs) {
    test::OpenedSettings desk;
    desk.prepare(dictionaryOf(pairs));
    benchOpening("dictionary of " + std::to_string(pairs) + " pairs", [&] {
        desk.app->openDict();
        return &windowsOf(desk).dictWC->window();
    });
}

void benchOnboarding() {
    test::OpenedSettings desk;
    test::OpenedSettings::provideModel(QStringLiteral("multilingual"));
    desk.prepare("{}");
    benchOpening("onboarding window", [&] {
        desk.app->windows->openOnboarding();
        return &windowsOf(desk).onboardWC->window();
    });
}

void runBench() {
    // The first window of a program costs more than others.
    static_cast<void>(showButton());
    benchSettings();
    for (const int headsets : {1, 20})
        benchRefreshing(headsets);
    for (const int pairs : {3, 100, 1000})
        benchDictionary(pairs);
    benchOnboarding();
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMainWithoutApplication(argv[0], [&] {
        const sayloft::test::XServer display;
        const sayloft::test::WindowManager windowManager(display);
        const QApplication application(argc, argv);
        sayloft::bench::runBench();
    });
}
