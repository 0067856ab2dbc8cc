// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QProcessEnvironment>
#include <QString>

namespace sayloft::test {

/// A private X server (Xvfb) on a free display, with a US keyboard. While it lives, DISPLAY of the
/// test names it.
class XServer {
public:
    struct Options {
        QString screen = QStringLiteral("1280x800x24");
        QStringList arguments = {};  ///< further ones, as Xvfb takes them
    };

    XServer() : XServer(Options{}) {}
    explicit XServer(const Options& options);
    /// Another server than Xvfb, with all the arguments that make its screens.
    XServer(const QString& program, const QStringList& screenArguments);
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    [[nodiscard]] QString display() const { return m_display; }
    /// The test's environment with DISPLAY set to this server, and without the desktop that the
    /// test itself may be started from.
    [[nodiscard]] QProcessEnvironment environment() const;
    [[nodiscard]] ChildProgram& program() { return m_program; }

private:
    ChildProgram m_program;
    QString m_display;
    QByteArray m_displayBefore;
};

}  // namespace sayloft::test
