// SPDX-License-Identifier: MIT
#pragma once

#include "speech/ReadinessPoll.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>

namespace sayloft {

class HelperProcess;

/// Keeps the speech server running with the chosen model and tells when it answers. Main thread;
/// the child process is started and ended on a thread of its own, in the order of the calls.
class ParakeetServer : public QObject {
public:
    ParakeetServer();
    ~ParakeetServer() override;
    ParakeetServer(const ParakeetServer&) = delete;
    ParakeetServer& operator=(const ParakeetServer&) = delete;

    /// Launches the server with the model at this path in place of any that runs. Returns at once;
    /// `onReady` follows when the server answers.
    void start(const QString& modelPath);

    /// Ends the server and waits until it is gone. `ready` stays as it is.
    void stop();

    /// The same as `stop` and `start`, without waiting.
    void restart(const QString& modelPath);

    [[nodiscard]] bool ready() const { return m_ready; }

    /// Whether what is sent to the server's port gets to the child that was started here. Where
    /// another program listens there, `onStranger` is called, and the log says so once until the
    /// child has the port again. Any thread.
    [[nodiscard]] bool hasPort();

    /// Called on the main thread each time a started server becomes ready.
    std::function<void()> onReady;

    /// Called on the main thread when the running server has ended without being asked to.
    std::function<void()> onGone;

    /// Called on the main thread when another program was found at the server's port.
    std::function<void()> onStranger;

private:
    enum class Before { nothing, endTheRunning };

    void launch(const QString& modelPath, Before before);
    void launched(std::uint64_t launchNumber);
    void gone(std::uint64_t launchNumber);
    void strangerSeen();

    bool m_ready = false;
    std::atomic<bool> m_isStrangerLogged = false;
    std::uint64_t m_launchNumber = 0;  ///< of the newest launch; answers of older ones do not count
    QThread m_thread;
    HelperProcess* m_process;  ///< lives on the thread and ends with it
    std::unique_ptr<ReadinessPoll> m_poll;
};

}  // namespace sayloft
