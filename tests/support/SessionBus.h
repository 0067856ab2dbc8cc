// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QProcessEnvironment>
#include <QString>

namespace sayloft::test {

/// A private D-Bus session bus (dbus-daemon) that programs find through `addTo`.
class SessionBus {
public:
    SessionBus();

    [[nodiscard]] QString address() const { return m_address; }
    void addTo(QProcessEnvironment& environment) const;
    [[nodiscard]] ChildProgram& program() { return m_program; }

private:
    ChildProgram m_program;
    QString m_address;
};

}  // namespace sayloft::test
