// SPDX-License-Identifier: MIT
#pragma once

#include <QTimer>

#include <chrono>
#include <functional>

namespace sayloft {

/// Restarts the speech server once it has answered what it has been asked, since the next one may
/// take longer to come up than a dictation waits for it. Main thread.
class PatientRestart {
public:
    /// `isAnswering` says whether the server is at work for a dictation; after `patience` it is
    /// restarted all the same.
    PatientRestart(std::function<bool()> isAnswering, std::function<void()> restart,
                   std::chrono::milliseconds patience = std::chrono::seconds(10));

    void request();
    /// To be called whenever that may have changed.
    void review();
    /// A restart that was asked for will not happen.
    void cancel() { m_patience.stop(); }

private:
    void now();

    const std::function<bool()> m_isAnswering;
    const std::function<void()> m_restart;
    QTimer m_patience;  ///< runs while a restart waits
};

}  // namespace sayloft
