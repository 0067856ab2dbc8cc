// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <string>

namespace sayloft::helper::test {

/// How a run of the helper ended.
struct Ending {
    int exitCode = -1;
    QString standardOutput;
    QString standardError;
};

/// Expects that the helper has failed and said so in this one line, without its name in front.
void expectFailure(const Ending& ending, const QString& line);

/// A bundle with the real helper and the starter model, copied to a directory of its own.
class HelperBundle {
public:
    HelperBundle();

    [[nodiscard]] QString root() const { return m_directory.path(); }
    [[nodiscard]] QString program() const;
    [[nodiscard]] QString starterModel() const;

    /// Where a GGUF server is looked for, first and second.
    [[nodiscard]] QString serverBesideUs() const;
    [[nodiscard]] QString serverInSourceTree() const;

    /// Runs the helper to its end; fails the test when that takes more than 20 s.
    [[nodiscard]] Ending run(const QStringList& arguments) const;
    /// The same with this model, on a free port.
    [[nodiscard]] Ending runWith(const QString& model) const;
    [[nodiscard]] static QStringList arguments(const QString& model, std::uint16_t port);

private:
    QTemporaryDir m_directory;
};

/// Creates missing directories; the copy may be run.
void installProgram(const QString& program, const QString& place);

/// The helper serving the starter model on a free port; ready when the constructor returns.
class StarterServer {
public:
    StarterServer();

    [[nodiscard]] std::uint16_t port() const { return m_port; }
    [[nodiscard]] sayloft::test::ChildProgram& program() { return m_program; }
    [[nodiscard]] const sayloft::test::ChildProgram& program() const { return m_program; }

    /// Posts the WAV file as the app does; the answer's body. Fails the test on another status.
    [[nodiscard]] std::string transcribe(const std::string& wav) const;

private:
    HelperBundle m_bundle;
    std::uint16_t m_port;
    sayloft::test::ChildProgram m_program;
};

}  // namespace sayloft::helper::test
