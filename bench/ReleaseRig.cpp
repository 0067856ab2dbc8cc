// SPDX-License-Identifier: MIT
#include "bench/ReleaseRig.h"

#include "bench/ByHand.h"

#include <stdexcept>

namespace sayloft::bench {

ReleaseRig::ReleaseRig() {
    if (!m_sayloft.waitForLog(QStringLiteral("event tap installed OK")) ||
        !m_sayloft.waitForHelper())
        throw std::runtime_error("the app did not come up: " + m_sayloft.log().toStdString());
}

void ReleaseRig::doByHand(const Steps& steps,
                          const std::function<void(Clock::time_point)>& arrived) const {
    ByHand({.recording = m_bundle.recording(),
            .selection = steps.selection,
            .pasteKey = steps.pasteKey})
        .run(m_desktop.environment(), arrived);
}

}  // namespace sayloft::bench
