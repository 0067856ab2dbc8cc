// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

/// A private D-Bus session bus (dbus-daemon) that programs find through `addTo`.
class SessionBus {
public:
    struct Options {
        QString socket = {};    ///< where it listens; by default in a directory of its own
        QString services = {};  ///< the only directory of services that it may start
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    };

    SessionBus() : SessionBus(Options{}) {}
    explicit SessionBus(Options options);

    /// With the identity of the bus, which the next one at its place has not.
    [[nodiscard]] QString address() const { return m_address; }
    void addTo(QProcessEnvironment& environment) const;
    [[nodiscard]] ChildProgram& program() { return *m_program; }

    /// Ends the bus without a farewell to anybody.
    void kill();
    /// Starts another bus at the same place.
    void restart();

private:
    QTemporaryDir m_directory;
    Options m_options;
    std::unique_ptr<ChildProgram> m_program;
    QString m_address;
};

}  // namespace sayloft::test
