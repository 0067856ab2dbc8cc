// SPDX-License-Identifier: MIT
#include "tests/support/RestartableXServer.h"

#include "platform/linux/XcbHandles.h"
#include "tests/support/WaitUntil.h"

#include <csignal>
#include <stdexcept>
#include <utility>

namespace sayloft::test {

RestartableXServer::RestartableXServer()
    : m_server(std::in_place), m_display(m_server->display()) {}

void RestartableXServer::kill() {
    m_server->program().signal(SIGKILL);
    static_cast<void>(m_server->program().waitForEnd(std::chrono::seconds(5)));
    m_again.reset();
}

void RestartableXServer::startAgain() {
    m_again.emplace(QStringLiteral("Xvfb"),
                    QStringList{m_display, QStringLiteral("-noreset"), QStringLiteral("-nolisten"),
                                QStringLiteral("tcp")});
    if (!waitUntil([] { return connectToXServer() != nullptr; }))
        throw std::runtime_error("the X server did not come back");
}

}  // namespace sayloft::test
