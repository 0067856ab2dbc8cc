// SPDX-License-Identifier: MIT
#include "models/ProgressThrottle.h"

#include <utility>

namespace sayloft {

std::optional<double> ProgressThrottle::pass(double fraction, Clock::time_point now) {
    if (fraction < 1 && m_last && now - *m_last < interval) {
        m_heldBack = fraction;
        return std::nullopt;
    }
    m_last = now;
    m_heldBack.reset();
    return fraction;
}

std::optional<double> ProgressThrottle::heldBack() {
    return std::exchange(m_heldBack, std::nullopt);
}

}  // namespace sayloft
