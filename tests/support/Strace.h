// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace sayloft::test {

/// A command line for `strace` that runs what is appended to it, with all that it starts, and
/// writes into a file which calls of the kernel it makes.
[[nodiscard]] QStringList strace(const QString& file, const QStringList& options);

/// The process of what such a command line runs. Throws std::runtime_error when there is none.
[[nodiscard]] int tracedBy(qint64 strace);

/// Whether a process has ended. A trace may go on until a call that it delays is due.
[[nodiscard]] bool hasEnded(int process);

}  // namespace sayloft::test
