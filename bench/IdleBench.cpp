// SPDX-License-Identifier: MIT
// What the program costs while nobody dictates: the real app with its helper and the starter model
// loaded, on a desktop on which nothing happens, over a minute; and in the same minute, two other
// programs that live in a tray, and two other HTTP servers beside the helper.
#include "bench/BenchMain.h"
#include "bench/Desktop.h"
#include "bench/Result.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/Nginx.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/RawHttp.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/TrayHost.h"

#include <array>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace sayloft::bench {
namespace {

using namespace std::chrono_literals;

// A program may wait ten seconds for what comes up with a session, and then look for it.
constexpr auto settling = 15s;
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

/// A program and what it used until the minute began and until it was over.
struct Measured {
    std::string name;
    qint64 pid = 0;
    Usage before = {};
    Usage after = {};
};

std::string perSecond(long count) {
    const double seconds = std::chrono::duration<double>(measured).count();
    return std::to_string(count) + " (" + describe(static_cast<double>(count) / seconds, 2, "/s") +
           ")";
}

std::string processorTime(const Measured& program) {
    return describe(program.after.processorMs - program.before.processorMs, 2, "ms");
}

std::string wakeUps(const Measured& program) {
    return perSecond(program.after.switches.voluntary - program.before.switches.voluntary);
}

std::string memory(const Measured& program) {
    return describe(static_cast<double>(program.after.rssKb) / 1024.0, 1, "MiB") + ", own " +
           describe(static_cast<double>(program.after.pssKb) / 1024.0, 1, "MiB");
}

void report(const Measured& ours, const Measured& peer) {
    const auto row = [&](const char* what, std::string (*value)(const Measured&)) {
        print({.name = ours.name + " idle: " + what,
               .value = value(ours),
               .peer = peer.name,
               .peerValue = value(peer)});
    };
    row("processor time in 60 s", processorTime);
    row("wake-ups in 60 s", wakeUps);
    row("memory", memory);
}

void runBench() {
    const Desktop desktop;
    const test::TrayHost panel(test::TrayHostKind::xfcePanel, desktop.display(), desktop.bus());
    test::SayloftProgram sayloft(desktop.home(), desktop.environment());
    if (!sayloft.waitForLog(QStringLiteral("event tap installed OK")) || !sayloft.waitForHelper())
        throw std::runtime_error("the app did not come up: " + sayloft.log().toStdString());
    QProcessEnvironment environment = desktop.environment();
    environment.insert(QStringLiteral("HOME"), desktop.path(QStringLiteral("others")));
    const test::ChildProgram copyq(QStringLiteral("copyq"), {}, environment);
    const test::ChildProgram flameshot(QStringLiteral("flameshot"), {}, environment);
    const test::ChildProgram python(
        QStringLiteral("/usr/bin/python3"),
        {QStringLiteral("-m"), QStringLiteral("http.server"), QStringLiteral("--bind"),
         QStringLiteral("127.0.0.1"), QString::number(test::freePort())},
        environment);
    const test::Nginx nginx;
    std::this_thread::sleep_for(settling);

    const qint64 app = sayloft.program().pid();
    std::array<Measured, 6> programs{
        Measured{.name = "app", .pid = app},
        Measured{.name = "helper", .pid = helperOf(app)},
        Measured{.name = "copyq", .pid = copyq.pid()},
        Measured{.name = "flameshot", .pid = flameshot.pid()},
        Measured{.name = "python3 -m http.server", .pid = python.pid()},
        Measured{.name = "nginx", .pid = nginx.pid()}};
    for (Measured& program : programs)
        program.before = usageOf(program.pid);
    std::this_thread::sleep_for(measured);
    for (Measured& program : programs)
        program.after = usageOf(program.pid);
    report(programs[0], programs[2]);
    report(programs[0], programs[3]);
    report(programs[1], programs[4]);
    report(programs[1], programs[5]);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
