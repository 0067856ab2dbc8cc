// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace sayloft::test {

/// The number after `name` in a file of lines "name: number ..."; throws std::runtime_error when
/// there is none.
[[nodiscard]] long numberIn(const QString& path, const QByteArray& name);

/// How often the threads of a process have left a processor so far.
struct ThreadSwitches {
    long voluntary = 0;  ///< each began with a wake-up
    long involuntary = 0;
};

/// Of all threads that the process has just now.
[[nodiscard]] ThreadSwitches threadSwitchesOf(qint64 pid);

/// User and system time of all threads since the start, finer than the ticks of /proc.
[[nodiscard]] double processorMillisecondsOf(qint64 pid);

/// Memory that is the process's own, plus its share of what it has in common with others.
[[nodiscard]] long proportionalKilobytesOf(qint64 pid);

/// Memory that the process has filled itself, and nothing that a file holds: another process that
/// starts or ends with the same libraries does not change it.
[[nodiscard]] long filledKilobytesOf(qint64 pid);

/// The most that the process ever had in memory.
[[nodiscard]] long peakKilobytesOf(qint64 pid);

[[nodiscard]] int threadsOf(qint64 pid);
[[nodiscard]] int openFilesOf(qint64 pid);

}  // namespace sayloft::test
