// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ChildProgram.h"
#include "tests/support/SessionBus.h"

#include <QByteArray>
#include <QString>

namespace sayloft::test {

/// Hears everything that is said on a bus with one interface (dbus-monitor).
class BusMonitor {
public:
    /// Listens when the constructor returns.
    BusMonitor(const SessionBus& bus, const QString& interface);

    /// Waits until `text` has been said, as dbus-monitor writes it.
    [[nodiscard]] bool hears(const QByteArray& text);

    /// How often `text` has been said so far.
    [[nodiscard]] qsizetype count(const QByteArray& text);

private:
    ChildProgram m_program;
    QByteArray m_heard;
};

}  // namespace sayloft::test
