// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/AtomsX11.h"
#include "platform/linux/XcbHandles.h"

#include <QByteArray>
#include <QList>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace sayloft::test {

/// An owner of a selection with the manners that a test needs, good or bad. It serves on a thread
/// of its own.
class SelectionTestOwner {
public:
    enum class Manner {
        answers,
        refuses,      ///< lists the target, but does not give it
        staysSilent,  ///< lists the target and never answers
        dribbles,     ///< sends a small piece every 50 ms, without end
    };

    struct Target {
        QByteArray name;
        QByteArray data;
        QByteArray type;  ///< empty: the name
        int format = 8;
        Manner manner = Manner::answers;
        std::chrono::milliseconds delay{0};  ///< before it answers
    };

    /// Owns the selection when the constructor returns.
    explicit SelectionTestOwner(std::vector<Target> targets,
                                const QByteArray& selection = "CLIPBOARD");
    ~SelectionTestOwner();
    SelectionTestOwner(const SelectionTestOwner&) = delete;
    SelectionTestOwner& operator=(const SelectionTestOwner&) = delete;

    /// Every target that has been asked for, in order.
    [[nodiscard]] QList<QByteArray> asked();

private:
    void serve();
    void onRequest(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool write(const xcb_selection_request_event_t& request, const Target& target);
    void writeTargets(const xcb_selection_request_event_t& request);
    void dribble();

    XcbConnection m_connection;
    AtomsX11 m_atoms;
    std::vector<Target> m_targets;
    xcb_window_t m_window;
    xcb_window_t m_dribbleTo = XCB_WINDOW_NONE;
    xcb_atom_t m_dribbleProperty = XCB_ATOM_NONE;
    std::mutex m_mutex;
    QList<QByteArray> m_asked;  // guarded by m_mutex
    std::atomic<bool> m_stopping = false;
    std::thread m_thread;
};

}  // namespace sayloft::test
