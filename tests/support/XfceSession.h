// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/XServer.h"

#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace sayloft::test {

/// A session of the Xfce desktop that a user has logged into and that has started one program.
class XfceSession {
public:
    /// `program` is an executable without arguments; it sees `environment`.
    XfceSession(const QString& program, const QProcessEnvironment& environment,
                const SessionBus& bus);

    void logOut();

private:
    QTemporaryDir m_configuration;
    QProcessEnvironment m_environment;
    std::unique_ptr<ChildProgram> m_settings;
    std::unique_ptr<ChildProgram> m_session;
};

/// The daemon that keeps the settings of Xfce.
[[nodiscard]] QString xfconfd();

}  // namespace sayloft::test
