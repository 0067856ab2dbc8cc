// SPDX-License-Identifier: MIT
#include "tests/support/UsageTrend.h"

#include "tests/support/ProcessFigures.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <stdexcept>

namespace sayloft::test {

void UsageTrend::look() {
    const double processor = processorMillisecondsOf(m_pid);
    if (m_processorBefore >= 0) {
        m_memoryKb.push_back(static_cast<double>(filledKilobytesOf(m_pid)));
        m_files.push_back(openFilesOf(m_pid));
        m_threads.push_back(threadsOf(m_pid));
        m_processorMs.push_back((processor - m_processorBefore) / m_step);
    }
    m_processorBefore = processor;
}

std::string UsageTrend::describe() const {
    std::array<char, 256> text{};
    std::snprintf(text.data(), text.size(),
                  "each time: memory %+.3f KiB (in all %+.0f, now %.0f KiB), files %+.4f (%.0f), "
                  "threads %+.4f "
                  "(%.0f), processor time %.1f ms and %+.4f ms more than the one before",
                  memoryKb(), memoryGrowthKb(), m_memoryKb.back(), files(), m_files.back(),
                  threads(), m_threads.back(), m_processorMs.back(), processorMs());
    return text.data();
}

double UsageTrend::slopeOf(const std::vector<double>& values) {
    std::vector<double> slopes;
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t j = i + 1; j < values.size(); ++j)
            slopes.push_back((values[j] - values[i]) / static_cast<double>(j - i));
    }
    if (slopes.empty())
        throw std::logic_error("a trend needs three looks");
    const auto middle = slopes.begin() + std::ssize(slopes) / 2;
    std::nth_element(slopes.begin(), middle, slopes.end());
    return *middle;
}

}  // namespace sayloft::test
