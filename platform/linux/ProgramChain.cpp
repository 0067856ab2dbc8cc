// SPDX-License-Identifier: MIT
#include "platform/linux/ProgramChain.h"

#include <QProcess>

namespace sayloft {
namespace {

/// A program that fails later than this has been of use.
constexpr qint64 failsAtOnce = 5000;

/// The program is the child of a shell: QProcess kills what it runs when it is destroyed, and that
/// must not be the window that the user looks at.
std::unique_ptr<QProcess> processFor(const QStringList& command) {
    auto process = std::make_unique<QProcess>();
    process->setProgram(QStringLiteral("/bin/sh"));
    process->setArguments(
        QStringList{QStringLiteral("-c"), QStringLiteral("\"$@\"; exit $?"), QStringLiteral("sh")} +
        command);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    return process;
}

}  // namespace

struct ProgramChain::Attempt {
    Commands commands;
    std::size_t next = 0;
    std::function<void()> noneWorks;
    QElapsedTimer age;
};

ProgramChain::~ProgramChain() {
    for (QProcess* process : findChildren<QProcess*>()) {
        process->disconnect();
        process->kill();
        process->waitForFinished();
    }
}

void ProgramChain::open(const Commands& commands, const std::function<void()>& noneWorks) {
    const auto attempt = std::make_shared<Attempt>();
    attempt->commands = commands;
    attempt->noneWorks = noneWorks;
    start(attempt);
}

void ProgramChain::start(const std::shared_ptr<Attempt>& attempt) {
    if (attempt->next == attempt->commands.size()) {
        attempt->noneWorks();
        return;
    }
    auto* process = processFor(attempt->commands[attempt->next++]).release();
    process->setParent(this);
    attempt->age.start();
    connect(process, &QProcess::finished, this, [this, attempt, process](int exitCode) {
        process->deleteLater();
        if (exitCode != 0 && attempt->age.elapsed() < failsAtOnce)
            start(attempt);
    });
    process->start();
}

}  // namespace sayloft
