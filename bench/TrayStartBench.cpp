// SPDX-License-Identifier: MIT
// How long it takes from the start of the program until its item is registered with the tray, and
// the same for other programs that live in a tray.
#include "bench/BenchMain.h"
#include "bench/Desktop.h"
#include "bench/Result.h"
#include "bench/TrayWatcher.h"
#include "tests/support/SayloftProgram.h"

#include <QDir>

#include <stdexcept>
#include <string>
#include <vector>

namespace sayloft::bench {
namespace {

constexpr int rounds = 15;

struct TrayProgram {
    std::string name;
    QString path;
    QStringList arguments;
    std::vector<double> milliseconds = {};
};

double startOnce(const TrayProgram& program, const QProcessEnvironment& environment,
                 TrayWatcher& watcher) {
    const auto start = TrayWatcher::Clock::now();
    test::ChildProgram running(program.path, program.arguments, environment);
    const auto registered = watcher.waitForItem();
    if (!registered)
        throw std::runtime_error(program.name + " did not come to the tray");
    running.end();
    return std::chrono::duration<double, std::milli>(*registered - start).count();
}

void runBench() {
    const Desktop desktop;
    QProcessEnvironment environment = desktop.environment();
    environment.insert(QStringLiteral("HOME"), desktop.home());
    TrayWatcher watcher(environment.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));

    std::vector<TrayProgram> programs{
        {"sayloft",
         QStringLiteral(SAYLOFT_BUNDLE_DIR) + QStringLiteral("/Contents/bin/sayloft"),
         {}},
        {"copyq", QStringLiteral("copyq"), {}},
        {"flameshot", QStringLiteral("flameshot"), {}},
    };
    // The first round fills caches and writes first configurations.
    for (int round = 0; round <= rounds; ++round) {
        for (TrayProgram& program : programs) {
            const double milliseconds = startOnce(program, environment, watcher);
            if (round > 0)
                program.milliseconds.push_back(milliseconds);
        }
    }
    for (std::size_t peer = 1; peer < programs.size(); ++peer)
        printMilliseconds("start to item in the tray", programs[0].milliseconds,
                          programs[peer].name, programs[peer].milliseconds);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
