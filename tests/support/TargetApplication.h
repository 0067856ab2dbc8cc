// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/XServer.h"

#include <QString>
#include <QTemporaryDir>

#include <chrono>
#include <memory>

namespace sayloft::test {

/// Programs of other people to write into.
enum class Target {
    mousepad,       ///< GTK 3
    featherpad,     ///< Qt
    xterm,          ///< a terminal without a toolkit
    xfce4Terminal,  ///< VTE
};

[[nodiscard]] const char* nameOf(Target target);
[[nodiscard]] bool isTerminal(Target target);

/// A running program with an empty document, or a terminal in which every byte that is typed goes
/// to a file. Has the focus when the constructor returns; needs a window manager.
class TargetApplication {
public:
    TargetApplication(Target target, const XServer& server, const QString& text = {});

    /// The text that the program itself has: its document as it saves it, or what the terminal has
    /// sent. Waits until that is `expected`; after `deadline` it is returned as it is.
    [[nodiscard]] QString textOnce(const QString& expected,
                                   std::chrono::milliseconds deadline = std::chrono::seconds(10));

    void selectAll();
    [[nodiscard]] ChildProgram& program() { return *m_program; }

private:
    void start(const XServer& server);
    [[nodiscard]] QStringList command() const;
    [[nodiscard]] QString file() const;
    [[nodiscard]] bool isReady() const;
    /// For whoever reads that it is not.
    [[nodiscard]] std::string state() const;
    [[nodiscard]] QString text();

    Target m_target;
    QTemporaryDir m_home;
    TestKeyboard m_keyboard;
    std::unique_ptr<ChildProgram> m_program;
};

}  // namespace sayloft::test
