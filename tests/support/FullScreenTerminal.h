// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/XServer.h"

#include <QByteArray>
#include <QTemporaryDir>

namespace sayloft::test {

/// An xterm of one colour that fills the screen and has the focus when the constructor returns;
/// needs a window manager. A program in it asks for the mouse and keeps what it is told.
class FullScreenTerminal {
public:
    explicit FullScreenTerminal(const XServer& server,
                                const QString& colour = QStringLiteral("white"));

    /// What the program in it has been sent so far, as terminals report clicks and keys.
    [[nodiscard]] QByteArray received() const;

private:
    [[nodiscard]] bool hasTheFocus() const;

    QTemporaryDir m_directory;
    QString m_file = m_directory.filePath(QStringLiteral("received"));
    xcb_window_t m_focusedBefore;
    ChildProgram m_program;
};

}  // namespace sayloft::test
