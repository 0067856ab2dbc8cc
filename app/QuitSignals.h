// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>

#include <functional>

namespace sayloft {

/// Turns SIGTERM, SIGINT and SIGHUP into an orderly end of the event loop. One object per process,
/// on the main thread; the signals have their default meaning again once it is gone.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> quit);
    ~QuitSignals();
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

private:
    QSocketNotifier m_notifier;
};

}  // namespace sayloft
