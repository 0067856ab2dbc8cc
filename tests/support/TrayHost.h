// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/XServer.h"

#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

enum class TrayHostKind { xfcePanel, lxqtPanel };

/// A panel at the top of the screen with nothing but a tray, at its right end. The tray is on the
/// bus when the constructor returns.
class TrayHost {
public:
    TrayHost(TrayHostKind kind, const XServer& display, const SessionBus& bus);

    [[nodiscard]] ChildProgram& program() { return *m_program; }

private:
    void startXfce(const QProcessEnvironment& environment);
    void startLxqt(const QProcessEnvironment& environment);

    QTemporaryDir m_home;
    std::unique_ptr<ChildProgram> m_settings;
    std::unique_ptr<ChildProgram> m_program;
};

}  // namespace sayloft::test
