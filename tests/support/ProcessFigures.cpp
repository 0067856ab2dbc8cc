// SPDX-License-Identifier: MIT
#include "tests/support/ProcessFigures.h"

#include "tests/support/TempHome.h"

#include <QDir>

#include <stdexcept>

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

}  // namespace sayloft::test
