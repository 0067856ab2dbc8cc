// SPDX-License-Identifier: MIT
#include "tests/support/BusMonitor.h"

#include "tests/support/WaitUntil.h"

#include <stdexcept>

namespace sayloft::test {

BusMonitor::BusMonitor(const SessionBus& bus, const QString& interface)
    : m_program(QStringLiteral("dbus-monitor"), {QStringLiteral("--address"), bus.address(),
                                                 QStringLiteral("interface='%1'").arg(interface)}) {
    // A monitor loses its name, and says so, when it begins to listen.
    if (!hears("member=NameLost"))
        throw std::runtime_error("dbus-monitor does not listen");
}

bool BusMonitor::hears(const QByteArray& text) {
    return waitUntil([&] { return count(text) > 0; });
}

qsizetype BusMonitor::count(const QByteArray& text) {
    m_heard += m_program.standardOutput();
    return m_heard.count(text);
}

}  // namespace sayloft::test
