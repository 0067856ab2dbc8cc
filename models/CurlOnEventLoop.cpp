// SPDX-License-Identifier: MIT
#include "models/CurlOnEventLoop.h"

#include <utility>

namespace sayloft {

// The calls below are those of libcurl's own description of its multi_socket interface.
CurlOnEventLoop::CurlOnEventLoop(CURL* easy, Done onDone, QObject* parent)
    : QObject(parent), m_easy(easy), m_onDone(std::move(onDone)), m_multi(curl_multi_init()) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
    curl_multi_setopt(m_multi.get(), CURLMOPT_SOCKETFUNCTION, &CurlOnEventLoop::socketChanged);
    curl_multi_setopt(m_multi.get(), CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi.get(), CURLMOPT_TIMERFUNCTION, &CurlOnEventLoop::timeoutChanged);
    curl_multi_setopt(m_multi.get(), CURLMOPT_TIMERDATA, this);
    curl_multi_add_handle(m_multi.get(), m_easy);
}

CurlOnEventLoop::~CurlOnEventLoop() {
    curl_multi_remove_handle(m_multi.get(), m_easy);
}

int CurlOnEventLoop::socketChanged(CURL* /*easy*/, curl_socket_t socket, int wanted, void* self,
                                   void* /*own*/) {
    static_cast<CurlOnEventLoop*>(self)->watch(socket, wanted);
    return 0;
}

int CurlOnEventLoop::timeoutChanged(CURLM* /*multi*/, long milliseconds, void* self) {
    QTimer& timer = static_cast<CurlOnEventLoop*>(self)->m_timer;
    if (milliseconds < 0)
        timer.stop();
    else
        timer.start(static_cast<int>(milliseconds));
    return 0;
}

void CurlOnEventLoop::watch(curl_socket_t socket, int wanted) {
    if (wanted != CURL_POLL_REMOVE) {
        notifier(socket, QSocketNotifier::Read)->setEnabled((wanted & CURL_POLL_IN) != 0);
        notifier(socket, QSocketNotifier::Write)->setEnabled((wanted & CURL_POLL_OUT) != 0);
        return;
    }
    const auto notifiers = m_notifiers.extract(socket);
    if (notifiers.empty())
        return;
    for (const auto& [type, each] : notifiers.mapped()) {
        each->setEnabled(false);
        // It may be its own signal that has led here.
        each->deleteLater();
    }
}

QSocketNotifier* CurlOnEventLoop::notifier(curl_socket_t socket, QSocketNotifier::Type type) {
    QSocketNotifier*& place = m_notifiers[socket][type];
    if (place == nullptr) {
        place = new QSocketNotifier(socket, type, this);
        const int event = type == QSocketNotifier::Read ? CURL_CSELECT_IN : CURL_CSELECT_OUT;
        connect(place, &QSocketNotifier::activated, this,
                [this, socket, event] { act(socket, event); });
    }
    return place;
}

void CurlOnEventLoop::act(curl_socket_t socket, int events) {
    int running = 0;
    curl_multi_socket_action(m_multi.get(), socket, events, &running);
    readResult();
}

void CurlOnEventLoop::readResult() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
        if (message->msg == CURLMSG_DONE)
            m_onDone(message->data.result);
    }
}

}  // namespace sayloft
