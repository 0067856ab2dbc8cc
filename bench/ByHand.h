// SPDX-License-Identifier: MIT
#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>

namespace sayloft::bench {

/// What the program does with a finished recording, done by hand: curl posts it to a speech server,
/// xclip takes a selection and xdotool presses the paste key.
struct ByHand {
    using Clock = std::chrono::steady_clock;

    QString recording;
    std::uint16_t port = 8090;
    QString selection = QStringLiteral("clipboard");  ///< as xclip names it
    QString pasteKey = QStringLiteral("ctrl+v");      ///< as xdotool does

    /// `arrived` waits for what is measured; it is told when the steps were begun. Throws
    /// std::runtime_error when one of them fails.
    void run(const QProcessEnvironment& environment,
             const std::function<void(Clock::time_point)>& arrived) const;
};

}  // namespace sayloft::bench
