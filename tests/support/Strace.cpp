// SPDX-License-Identifier: MIT
#include "tests/support/Strace.h"

#include "tests/support/ChildProgram.h"

#include <QFile>

#include <stdexcept>

namespace sayloft::test {

QStringList strace(const QString& file, const QStringList& options) {
    // LeakSanitizer cannot look at a program that is traced, and fails it. What else sanitizers are
    // told stands in other variables.
    return QStringList{QStringLiteral("strace"), QStringLiteral("-f"),
                       QStringLiteral("-qq"),    QStringLiteral("--seccomp-bpf"),
                       QStringLiteral("-E"),     QStringLiteral("LSAN_OPTIONS=detect_leaks=0"),
                       QStringLiteral("-o"),     file} +
           options;
}

int tracedBy(qint64 strace) {
    const int process = run(QStringLiteral("pgrep"),
                            {QStringLiteral("-o"), QStringLiteral("-P"), QString::number(strace)})
                            .trimmed()
                            .toInt();
    if (process <= 0)
        throw std::runtime_error("strace runs no program");
    return process;
}

bool hasEnded(int process) {
    QFile file(QStringLiteral("/proc/%1/stat").arg(process));
    // "123 (name) Z …"
    return !file.open(QIODevice::ReadOnly) || file.readAll().contains(") Z ");
}

}  // namespace sayloft::test
