// SPDX-License-Identifier: MIT
#pragma once

#include "models/CurlHandles.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <map>

namespace sayloft {

/// Runs one libcurl transfer on the event loop of its thread, without blocking it. Must not be
/// destroyed by a callback of the transfer or by `onDone`.
class CurlOnEventLoop : public QObject {
public:
    using Done = std::function<void(CURLcode)>;

    /// Nothing happens before the event loop runs. `easy` outlives this.
    CurlOnEventLoop(CURL* easy, Done onDone, QObject* parent);
    ~CurlOnEventLoop() override;
    CurlOnEventLoop(const CurlOnEventLoop&) = delete;
    CurlOnEventLoop& operator=(const CurlOnEventLoop&) = delete;

private:
    static int socketChanged(CURL* easy, curl_socket_t socket, int wanted, void* self, void* own);
    static int timeoutChanged(CURLM* multi, long milliseconds, void* self);

    void watch(curl_socket_t socket, int wanted);
    [[nodiscard]] QSocketNotifier* notifier(curl_socket_t socket, QSocketNotifier::Type type);
    void act(curl_socket_t socket, int events);
    void readResult();

    CURL* m_easy;
    Done m_onDone;
    QTimer m_timer;
    std::map<curl_socket_t, std::map<QSocketNotifier::Type, QSocketNotifier*>> m_notifiers;
    // Last: while it is cleaned up it may still change the members above.
    CurlMulti m_multi;
};

}  // namespace sayloft
