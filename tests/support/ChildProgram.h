// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <chrono>

namespace sayloft::test {

/// A program that runs as long as this object lives; it also ends when the test dies.
class ChildProgram {
public:
    /// Throws std::runtime_error when the program cannot be started. Its standard error goes to the
    /// test's own unless `environment` of the test sets nothing else.
    ChildProgram(const QString& program, const QStringList& arguments,
                 const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    ~ChildProgram();
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    [[nodiscard]] qint64 pid() const;
    [[nodiscard]] bool isRunning() const;
    void signal(int number) const;

    /// Ends the program with SIGTERM, after 3 s with SIGKILL, and waits for it.
    void end();
    [[nodiscard]] bool waitForEnd(std::chrono::milliseconds deadline);
    [[nodiscard]] int exitCode() const;

    [[nodiscard]] QByteArray standardOutput();
    [[nodiscard]] QByteArray standardError();
    QProcess& process() { return m_process; }

private:
    QProcess m_process;
};

/// Runs a program to its end and returns its standard output; throws std::runtime_error when it
/// cannot be started, fails or takes longer than `deadline`.
QByteArray run(const QString& program, const QStringList& arguments, const QByteArray& input = {},
               const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment(),
               std::chrono::milliseconds deadline = std::chrono::seconds(20));

}  // namespace sayloft::test
