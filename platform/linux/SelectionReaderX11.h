// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/SelectionContentX11.h"
#include "platform/linux/SelectionInboxX11.h"
#include "platform/linux/SelectionThreadX11.h"

#include <deque>
#include <functional>
#include <optional>

namespace sayloft {

/// Reads once what another program offers on a selection: its targets, then each that is worth
/// saving, one after the other. Never waits: it goes on with every event that it is handed. On the
/// selection thread.
class SelectionReaderX11 {
public:
    /// Nothing when the owner did not hand everything over in time. What it refuses is left out.
    using Finished = std::function<void(std::optional<SelectionContent>)>;

    /// `finished` is called once, not before this returns, and may destroy the reader. There is one
    /// reader at a time to an inbox.
    SelectionReaderX11(SelectionThreadX11& thread, AtomsX11& atoms, SelectionInboxX11& inbox,
                       xcb_atom_t selection, Finished finished);
    ~SelectionReaderX11();
    SelectionReaderX11(const SelectionReaderX11&) = delete;
    SelectionReaderX11& operator=(const SelectionReaderX11&) = delete;

    /// From now on somebody waits for the result: an owner that has been silent for 0.4 s is given
    /// up, before only one that is not done within a second in all. May finish at once.
    void hurry();

    void handle(const xcb_generic_event_t& event);

private:
    enum class Step { targets, value, pieces };

    void ask(xcb_atom_t target);
    void askForNext();
    [[nodiscard]] bool isAnswer(const xcb_selection_notify_event_t& event) const;
    void onNotify(const xcb_selection_notify_event_t& event);
    void onTargets();
    void onValue();
    void onPiece();
    void noticeProgress();
    void armTimer();
    void finish(std::optional<SelectionContent> content);
    [[nodiscard]] std::optional<SelectionValue> takeProperty();

    SelectionThreadX11& m_thread;
    AtomsX11& m_atoms;
    SelectionInboxX11& m_inbox;
    xcb_atom_t m_selection;
    xcb_atom_t m_property;
    Finished m_finished;
    xcb_timestamp_t m_time;

    Step m_step = Step::targets;
    xcb_atom_t m_target = XCB_ATOM_NONE;
    std::deque<xcb_atom_t> m_remaining;
    SelectionValue m_incoming;
    SelectionContent m_content;

    bool m_isHurried = false;
    SelectionThreadX11::Clock::time_point m_started;
    SelectionThreadX11::Clock::time_point m_lastProgress;
    SelectionThreadX11::Timer m_timer;
};

}  // namespace sayloft
