// SPDX-License-Identifier: MIT
#include "tests/support/ChildProgram.h"

#include <csignal>
#include <stdexcept>

#include <sys/prctl.h>

namespace sayloft::test {
namespace {

std::runtime_error failure(const QString& program, const QString& reason) {
    return std::runtime_error((program + QStringLiteral(": ") + reason).toStdString());
}

void startWithTheTest(QProcess& process, const QString& program, const QStringList& arguments,
                      const QProcessEnvironment& environment) {
    process.setProcessEnvironment(environment);
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.start(program, arguments);
    if (!process.waitForStarted(10000))
        throw failure(program, process.errorString());
}

}  // namespace

ChildProgram::ChildProgram(const QString& program, const QStringList& arguments,
                           const QProcessEnvironment& environment) {
    startWithTheTest(m_process, program, arguments, environment);
}

ChildProgram::~ChildProgram() {
    end();
}

qint64 ChildProgram::pid() const {
    return m_process.processId();
}

bool ChildProgram::isRunning() const {
    return m_process.state() == QProcess::Running;
}

void ChildProgram::signal(int number) const {
    if (isRunning())
        ::kill(static_cast<pid_t>(pid()), number);
}

void ChildProgram::end() {
    if (!isRunning())
        return;
    signal(SIGCONT);
    m_process.terminate();
    if (m_process.waitForFinished(3000))
        return;
    m_process.kill();
    m_process.waitForFinished(3000);
}

bool ChildProgram::waitForEnd(std::chrono::milliseconds deadline) {
    return !isRunning() || m_process.waitForFinished(static_cast<int>(deadline.count()));
}

int ChildProgram::exitCode() const {
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QByteArray ChildProgram::standardOutput() {
    return m_process.readAllStandardOutput();
}

QByteArray ChildProgram::standardError() {
    return m_process.readAllStandardError();
}

QByteArray run(const QString& program, const QStringList& arguments, const QByteArray& input,
               const QProcessEnvironment& environment, std::chrono::milliseconds deadline) {
    QProcess process;
    startWithTheTest(process, program, arguments, environment);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(static_cast<int>(deadline.count())))
        throw failure(program, QStringLiteral("did not end in time"));
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw failure(program, QString::fromUtf8(process.readAllStandardError()));
    return process.readAllStandardOutput();
}

}  // namespace sayloft::test
