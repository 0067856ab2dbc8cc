// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/XServer.h"

#include <QString>

#include <optional>

namespace sayloft::test {

/// A private X server that can be killed and started again under the same display number.
class RestartableXServer {
public:
    RestartableXServer();

    /// Ends the server without a farewell to its clients.
    void kill();

    /// Accepts clients when this returns.
    void startAgain();

private:
    std::optional<XServer> m_server;
    QString m_display;
    std::optional<ChildProgram> m_again;
};

}  // namespace sayloft::test
