// SPDX-License-Identifier: MIT
// What the program costs while nobody dictates: the real app with its helper and the starter model
// loaded, on a desktop on which nothing happens, over a minute.
#include "bench/Desktop.h"
#include "bench/Result.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/SayloftProgram.h"

#include <QCoreApplication>

#include <array>
#include <chrono>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <thread>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;

constexpr auto settling = 5s;
constexpr auto measured = 60s;

/// What /proc says about one process; everything since its start but the memory.
struct Usage {
    double processorMs = 0;  ///< user and system, all threads
    test::ThreadSwitches switches;
    long rssKb = 0;
    long pssKb = 0;
};

Usage usageOf(qint64 pid) {
    const QString memory = QStringLiteral("/proc/%1/smaps_rollup").arg(pid);
    return {.processorMs = test::processorMillisecondsOf(pid),
            .switches = test::threadSwitchesOf(pid),
            .rssKb = test::numberIn(memory, "Rss"),
            .pssKb = test::proportionalKilobytesOf(pid)};
}

qint64 helperOf(qint64 app) {
    const QByteArray pid = test::run(
        QStringLiteral("pgrep"), {QStringLiteral("-x"), QStringLiteral("-P"), QString::number(app),
                                  QStringLiteral("parakeet-server")});
    return pid.trimmed().toLongLong();
}

void report(const std::string& name, const Usage& before, const Usage& after) {
    const double seconds = std::chrono::duration<double>(measured).count();
    const auto row = [&](const char* what, const std::string& value) {
        print({.name = name + " idle: " + what, .value = value, .peer = {}, .peerValue = {}});
    };
    const auto perSecond = [&](long count) {
        return std::to_string(count) + " (" +
               describe(static_cast<double>(count) / seconds, 2, "/s") + ")";
    };
    const auto megabytes = [](long kb) {
        return describe(static_cast<double>(kb) / 1024.0, 1, "MiB");
    };
    std::printf("%s: %.0f ms of processor time from its start until the minute began\n",
                name.c_str(), before.processorMs);
    row("processor time in 60 s", describe(after.processorMs - before.processorMs, 2, "ms"));
    row("voluntary context switches in 60 s",
        perSecond(after.switches.voluntary - before.switches.voluntary));
    row("involuntary context switches in 60 s",
        perSecond(after.switches.involuntary - before.switches.involuntary));
    row("resident memory (RSS)", megabytes(after.rssKb));
    row("proportional memory (PSS)", megabytes(after.pssKb));
}

void runBench() {
    const Desktop desktop;
    test::SayloftProgram sayloft(desktop.home(), desktop.environment());
    if (!sayloft.waitForLog(QStringLiteral("event tap installed OK")) || !sayloft.waitForHelper())
        throw std::runtime_error("the app did not come up: " + sayloft.log().toStdString());
    std::this_thread::sleep_for(settling);

    const qint64 app = sayloft.program().pid();
    const qint64 helper = helperOf(app);
    const std::array before{usageOf(app), usageOf(helper)};
    std::this_thread::sleep_for(measured);
    const std::array after{usageOf(app), usageOf(helper)};
    report("app", before[0], after[0]);
    report("helper", before[1], after[1]);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    try {
        sayloft::bench::runBench();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_idle: %s\n", error.what());
        return 1;
    }
    return 0;
}
