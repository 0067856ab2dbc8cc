// SPDX-License-Identifier: MIT
#include "tests/support/FakeUserInterface.h"

#include <sstream>

namespace sayloft::test {

void FakeStatusItem::setState(IconState state) {
    switch (state) {
        case IconState::warming:
            return m_seen.push_back("warming");
        case IconState::ready:
            return m_seen.push_back("ready");
        case IconState::recording:
            return m_seen.push_back("recording");
        case IconState::processing:
            return m_seen.push_back("processing");
        case IconState::error:
            return m_seen.push_back("error");
    }
}

void FakeOverlay::configure(bool minimal, double appear, double hide, double hold) {
    std::ostringstream line;
    line << (minimal ? "minimal " : "full ") << appear << ' ' << hide << ' ' << hold;
    m_seen.push_back(line.str());
}

}  // namespace sayloft::test
