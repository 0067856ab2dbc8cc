// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/XcbHandles.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace sayloft {

/// A thread that serves one X connection: its events, tasks from other threads and timers. When the
/// server goes, tasks and timers go on.
class SelectionThreadX11 {
public:
    using Task = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    struct Handlers {
        std::function<void(const xcb_generic_event_t&)> event;
        Task connectionLost;  ///< once; there are no events after it
    };

    /// A one-shot timer of the thread; destroying it stops it. Used on the thread only.
    class Timer {
    public:
        explicit Timer(SelectionThreadX11& thread) : m_thread(thread) {}
        ~Timer() { stop(); }
        Timer(const Timer&) = delete;
        Timer& operator=(const Timer&) = delete;

        /// A timer that runs already starts anew.
        void start(std::chrono::milliseconds delay, Task task);
        void stop();

    private:
        SelectionThreadX11& m_thread;
        std::pair<Clock::time_point, std::uint64_t> m_key{};
    };

    /// `connection` must not be null. The thread starts with `start`.
    explicit SelectionThreadX11(XcbConnection connection);
    ~SelectionThreadX11();
    SelectionThreadX11(const SelectionThreadX11&) = delete;
    SelectionThreadX11& operator=(const SelectionThreadX11&) = delete;

    /// Runs `first` on the thread, then tasks in the order in which they were posted.
    void start(Handlers handlers, Task first);

    /// Any thread. Tasks that are posted after `stop` never run.
    void post(Task task);

    /// Ends the thread after the tasks posted so far and waits for it; a wait for the X server is
    /// cut off. Any other thread; twice does no harm.
    void stop();

    // On the thread, and before it has started:

    [[nodiscard]] xcb_connection_t* connection() const { return m_connection.get(); }
    [[nodiscard]] bool isConnected() const;

    /// The server's clock now, by a change of a property of `window`, which must select property
    /// changes; XCB_CURRENT_TIME when the server is gone.
    [[nodiscard]] xcb_timestamp_t serverTime(xcb_window_t window);

    /// Handles every event that has arrived.
    void handleEvents();

private:
    void run();
    bool runTasks();
    bool runTimers();
    void wait();
    [[nodiscard]] int millisecondsToNextTimer() const;
    [[nodiscard]] XcbOwned<xcb_generic_event_t> nextEvent();
    void noticeLoss();

    XcbConnection m_connection;
    int m_wakeFd;
    Handlers m_handlers;
    bool m_lossReported = false;
    std::deque<XcbOwned<xcb_generic_event_t>> m_stashedEvents;
    std::map<std::pair<Clock::time_point, std::uint64_t>, Task> m_timers;
    std::uint64_t m_lastTimerId = 0;

    std::mutex m_mutex;
    std::deque<Task> m_tasks;  // guarded by m_mutex
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

}  // namespace sayloft
