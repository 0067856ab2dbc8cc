// SPDX-License-Identifier: MIT
#include "tests/support/ProcessFigures.h"

#include "tests/support/TempHome.h"

#include <QDir>

#include <stdexcept>

#include <time.h>

namespace sayloft::test {

long numberIn(const QString& path, const QByteArray& name) {
    for (const QByteArray& line : readFile(path).split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ').first().toLong();
    }
    throw std::runtime_error(path.toStdString() + " has no " + name.toStdString());
}

ThreadSwitches threadSwitchesOf(qint64 pid) {
    const QString tasks = QStringLiteral("/proc/%1/task").arg(pid);
    ThreadSwitches switches;
    for (const QString& thread : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString status = tasks + QStringLiteral("/%1/status").arg(thread);
        switches.voluntary += numberIn(status, "voluntary_ctxt_switches");
        switches.involuntary += numberIn(status, "nonvoluntary_ctxt_switches");
    }
    return switches;
}

double processorMillisecondsOf(qint64 pid) {
    clockid_t clock = {};
    timespec used = {};
    if (::clock_getcpuclockid(static_cast<pid_t>(pid), &clock) != 0 ||
        ::clock_gettime(clock, &used) != 0)
        throw std::runtime_error("the processor time cannot be read");
    return 1e3 * static_cast<double>(used.tv_sec) + 1e-6 * static_cast<double>(used.tv_nsec);
}

long proportionalKilobytesOf(qint64 pid) {
    return numberIn(QStringLiteral("/proc/%1/smaps_rollup").arg(pid), "Pss");
}

long filledKilobytesOf(qint64 pid) {
    const QString status = QStringLiteral("/proc/%1/status").arg(pid);
    return numberIn(status, "RssAnon") + numberIn(status, "RssShmem");
}

long peakKilobytesOf(qint64 pid) {
    return numberIn(QStringLiteral("/proc/%1/status").arg(pid), "VmHWM");
}

int threadsOf(qint64 pid) {
    return static_cast<int>(numberIn(QStringLiteral("/proc/%1/status").arg(pid), "Threads"));
}

int openFilesOf(qint64 pid) {
    const QDir files(QStringLiteral("/proc/%1/fd").arg(pid));
    return static_cast<int>(
        files.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}

}  // namespace sayloft::test
