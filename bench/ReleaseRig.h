// SPDX-License-Identifier: MIT
#pragma once

#include "bench/Desktop.h"
#include "bench/InstantBundle.h"
#include "tests/support/SayloftProgram.h"

#include <QString>

#include <chrono>
#include <functional>

namespace sayloft::bench {

/// The real program with a speech server that answers at once, on a desktop of its own; and what
/// it does, done by hand: curl posts the same recording to the same server, xclip takes a selection
/// and xdotool presses the paste key. Functions throw std::runtime_error when a step fails.
class ReleaseRig {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr int rounds = 30;
    /// How long a chord is held.
    static constexpr std::chrono::milliseconds hold{500};
    /// Longer than the program needs to bring the clipboard back.
    static constexpr std::chrono::milliseconds rest{700};

    ReleaseRig();

    struct Steps {
        QString selection;  ///< as xclip names it
        QString pasteKey;   ///< as xdotool does
    };
    /// `arrived` waits for what is measured; it is told when the steps were begun.
    void doByHand(const Steps& steps, const std::function<void(Clock::time_point)>& arrived) const;

    [[nodiscard]] const Desktop& desktop() const { return m_desktop; }
    [[nodiscard]] const InstantBundle& bundle() const { return m_bundle; }
    [[nodiscard]] const test::SayloftProgram& sayloft() const { return m_sayloft; }

private:
    Desktop m_desktop;
    InstantBundle m_bundle{m_desktop.path(QStringLiteral("Sayloft.app"))};
    test::SayloftProgram m_sayloft{m_desktop.home(), m_desktop.environment(), m_bundle.root()};
};

}  // namespace sayloft::bench
