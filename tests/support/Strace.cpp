// SPDX-License-Identifier: MIT
#include "tests/support/Strace.h"

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

}  // namespace sayloft::test
