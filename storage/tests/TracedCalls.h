// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

namespace sayloft::test {

/// A call to the kernel that has returned, as strace saw it.
struct TracedCall {
    struct Argument {
        QString word;  ///< as strace writes it: "O_RDONLY|O_CLOEXEC", or the number of a descriptor
        QByteArray text;  ///< of a string all of it, of a descriptor the path of what it leads to
    };

    QString name;
    std::vector<Argument> arguments;  ///< without the working directory, as paths are absolute
    qint64 result = 0;
    std::size_t before = 0;  ///< so many calls of the trace had returned when it began

    /// In the order of the arguments.
    [[nodiscard]] QStringList paths() const;
};

/// What strace has to be told so that the trace can be read by `tracedCalls`.
[[nodiscard]] QStringList callsInFull();

/// In the order in which they returned, of a trace of `callsInFull`. Throws std::runtime_error
/// where that is not one.
[[nodiscard]] std::vector<TracedCall> tracedCalls(const QByteArray& trace);

/// Whether a path was given to something else while it was opened or given away by another thread:
/// which of the two came first is not to be seen in a trace.
[[nodiscard]] bool isOrderInDoubt(const std::vector<TracedCall>& calls);

}  // namespace sayloft::test
