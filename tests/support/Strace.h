// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

namespace sayloft::test {

/// A command line for `strace` that runs what is appended to it, with all that it starts, and
/// writes into a file which calls of the kernel it makes.
[[nodiscard]] QStringList strace(const QString& file, const QStringList& options);

}  // namespace sayloft::test
