// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <string>
#include <vector>

namespace sayloft::test {

/// What a process holds and uses more, by and by, as something is done again and again.
class UsageTrend {
public:
    /// Figures are taken after every `step` times.
    UsageTrend(qint64 pid, int step) : m_pid(pid), m_step(step) {}

    /// Looks at the process. The first look is the one that the processor time counts from.
    void look();

    /// How much each time adds: the median of the slopes between any two looks but the first. A
    /// single jump, as when a thread needs memory of its own for once, is no trend.
    [[nodiscard]] double memoryKb() const { return slopeOf(m_memoryKb) / m_step; }
    [[nodiscard]] double files() const { return slopeOf(m_files) / m_step; }
    [[nodiscard]] double threads() const { return slopeOf(m_threads) / m_step; }
    [[nodiscard]] double processorMs() const { return slopeOf(m_processorMs) / m_step; }

    /// With all jumps, from the second look to the last.
    [[nodiscard]] double memoryGrowthKb() const { return m_memoryKb.back() - m_memoryKb.front(); }

    /// All of it in one line, with what there was at the last look.
    [[nodiscard]] std::string describe() const;

private:
    [[nodiscard]] static double slopeOf(const std::vector<double>& values);

    qint64 m_pid;
    int m_step;
    double m_processorBefore = -1;
    std::vector<double> m_memoryKb;
    std::vector<double> m_files;
    std::vector<double> m_threads;
    std::vector<double> m_processorMs;  ///< of each time since the look before
};

}  // namespace sayloft::test
