// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <memory>

namespace sayloft::test {

/// The real program from the build's bundle, started as a user starts it, with a home of its own.
class SayloftProgram {
public:
    /// `home` is the home directory; a configuration must be written into it before this. `bundle`
    /// is where the program is installed; `runBy` is a command line that runs it, where one does.
    SayloftProgram(const QString& home, QProcessEnvironment environment,
                   const QString& bundle = QStringLiteral(SAYLOFT_BUNDLE_DIR),
                   QStringList runBy = {});
    ~SayloftProgram();
    SayloftProgram(const SayloftProgram&) = delete;
    SayloftProgram& operator=(const SayloftProgram&) = delete;

    /// Waits until `text` is in the log that the program writes; fails after `deadline`.
    [[nodiscard]] bool waitForLog(
        const QString& text, std::chrono::milliseconds deadline = std::chrono::seconds(20)) const;
    [[nodiscard]] QString log() const;

    /// Waits until the speech helper answers.
    [[nodiscard]] bool waitForHelper() const;

    [[nodiscard]] ChildProgram& program() { return *m_program; }

private:
    void endTraced();

    QString m_home;
    bool m_isTraced;
    std::unique_ptr<ChildProgram> m_program;
};

/// Copies the bundle into `directory`, with `program` at `place` in its contents, and returns the
/// copy. Throws std::runtime_error when that fails.
[[nodiscard]] QString bundleWith(const QString& program, const QString& place,
                                 const QString& directory);

/// The same without a speech helper.
[[nodiscard]] QString bundleWithoutHelper(const QString& directory);

/// The same with the stand-in for it.
[[nodiscard]] QString bundleWithForeignHelper(const QString& directory);

/// Process ids of all speech helpers, whoever started them, one to a line.
[[nodiscard]] QByteArray helpers();
[[nodiscard]] bool helperRuns();
/// Throws std::runtime_error where there is not exactly one.
void signalHelper(int number);

/// Writes `json` as the configuration of the user whose home is `home`.
void writeConfig(const QString& home, const QByteArray& json);

}  // namespace sayloft::test
