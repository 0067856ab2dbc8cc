// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

namespace sayloft::test {

/// A private D-Bus session bus (dbus-daemon) that programs find through `addTo`.
class SessionBus {
public:
    struct Options {
        QString socket = {};    ///< where it listens; by default a place of its own
        QString services = {};  ///< the only directory of services that it may start
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    };

    SessionBus() : SessionBus(Options{}) {}
    explicit SessionBus(const Options& options);

    [[nodiscard]] QString address() const { return m_address; }
    void addTo(QProcessEnvironment& environment) const;
    [[nodiscard]] ChildProgram& program() { return m_program; }

private:
    QTemporaryDir m_directory;
    ChildProgram m_program;
    QString m_address;
};

}  // namespace sayloft::test
