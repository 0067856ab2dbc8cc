// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionThreadX11.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <limits>

namespace sayloft {
namespace {

constexpr std::uint8_t SENT_EVENT_BIT = 0x80;
constexpr nfds_t WITHOUT_SERVER = 1;
constexpr nfds_t WITH_SERVER = 2;

}  // namespace

void SelectionThreadX11::Timer::start(std::chrono::milliseconds delay, Task task) {
    stop();
    m_key = {Clock::now() + delay, ++m_thread.m_lastTimerId};
    m_thread.m_timers.emplace(m_key, std::move(task));
}

void SelectionThreadX11::Timer::stop() {
    m_thread.m_timers.erase(m_key);
}

SelectionThreadX11::SelectionThreadX11(XcbConnection connection)
    : m_connection(std::move(connection)), m_wakeFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

SelectionThreadX11::~SelectionThreadX11() {
    stop();
    close(m_wakeFd);
}

void SelectionThreadX11::start(Handlers handlers, Task first) {
    m_handlers = std::move(handlers);
    post(std::move(first));
    m_thread = std::thread([this] { run(); });
}

void SelectionThreadX11::post(Task task) {
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    eventfd_write(m_wakeFd, 1);
}

void SelectionThreadX11::stop() {
    if (!m_thread.joinable())
        return;
    m_stopping = true;
    eventfd_write(m_wakeFd, 1);
    // A thread that waits for a server that hangs would never come back. What has been sent so far
    // still reaches the server.
    shutdown(xcb_get_file_descriptor(m_connection.get()), SHUT_RD);
    m_thread.join();
}

bool SelectionThreadX11::isConnected() const {
    return xcb_connection_has_error(m_connection.get()) == 0;
}

xcb_timestamp_t SelectionThreadX11::serverTime(xcb_window_t window) {
    const auto property = static_cast<xcb_atom_t>(XCB_ATOM_WM_NAME);
    xcb_change_property(connection(), XCB_PROP_MODE_APPEND, window, property, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(connection());
    while (XcbOwned<xcb_generic_event_t> event{xcb_wait_for_event(connection())}) {
        if ((event->response_type & ~SENT_EVENT_BIT) == XCB_PROPERTY_NOTIFY) {
            const auto* notify = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
            if (notify->window == window && notify->atom == property)
                return notify->time;
        }
        m_stashedEvents.push_back(std::move(event));
    }
    return XCB_CURRENT_TIME;
}

void SelectionThreadX11::handleEvents() {
    while (const auto event = nextEvent())
        m_handlers.event(*event);
}

void SelectionThreadX11::run() {
    while (true) {
        const bool ranTasks = runTasks();
        handleEvents();
        noticeLoss();
        const bool ranTimers = runTimers();
        if (ranTasks || ranTimers)
            continue;
        if (m_stopping)
            break;
        wait();
    }
    xcb_flush(connection());
}

bool SelectionThreadX11::runTasks() {
    std::deque<Task> tasks;
    {
        const std::lock_guard lock(m_mutex);
        tasks.swap(m_tasks);
    }
    for (const Task& task : tasks)
        task();
    return !tasks.empty();
}

bool SelectionThreadX11::runTimers() {
    bool ran = false;
    while (!m_timers.empty() && m_timers.begin()->first.first <= Clock::now()) {
        const Task task = std::move(m_timers.extract(m_timers.begin()).mapped());
        task();
        ran = true;
    }
    return ran;
}

void SelectionThreadX11::wait() {
    xcb_flush(connection());
    // Flushing may have read events that poll() would then wait for in vain.
    if (XcbOwned<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection())}) {
        m_stashedEvents.push_back(std::move(event));
        return;
    }
    std::array<pollfd, WITH_SERVER> sources{{
        {.fd = m_wakeFd, .events = POLLIN, .revents = 0},
        {.fd = xcb_get_file_descriptor(connection()), .events = POLLIN, .revents = 0},
    }};
    poll(sources.data(), isConnected() ? WITH_SERVER : WITHOUT_SERVER, millisecondsToNextTimer());
    eventfd_t wakeUps = 0;
    eventfd_read(m_wakeFd, &wakeUps);
}

int SelectionThreadX11::millisecondsToNextTimer() const {
    if (m_timers.empty())
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(m_timers.begin()->first.first - Clock::now());
    return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(
        left.count(), 0, std::numeric_limits<int>::max()));
}

XcbOwned<xcb_generic_event_t> SelectionThreadX11::nextEvent() {
    if (m_stashedEvents.empty())
        return XcbOwned<xcb_generic_event_t>(xcb_poll_for_event(connection()));
    XcbOwned<xcb_generic_event_t> event = std::move(m_stashedEvents.front());
    m_stashedEvents.pop_front();
    return event;
}

void SelectionThreadX11::noticeLoss() {
    if (m_lossReported || isConnected())
        return;
    m_lossReported = true;
    m_handlers.connectionLost();
}

}  // namespace sayloft
