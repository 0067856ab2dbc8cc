// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/SelectionContentX11.h"
#include "platform/linux/SelectionInboxX11.h"
#include "platform/linux/SelectionOwnerX11.h"
#include "platform/linux/SelectionReaderX11.h"
#include "platform/linux/SelectionThreadX11.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace sayloft {

/// Snapshots of one selection, which may be read ahead of time: what counts is the selection at
/// the moment of `take`. On the selection thread.
class SnapshotKeeperX11 {
public:
    /// Nothing when the selection could not be read in time. Empty: nobody owns it.
    using Taken = std::function<void(std::optional<SelectionContent>)>;

    /// `own` is us as an owner of the same selection; it must outlive this.
    SnapshotKeeperX11(SelectionThreadX11& thread, AtomsX11& atoms, SelectionOwnerX11& own);

    /// Reads the selection now, and again whenever its owner changes, until `take`; for at most
    /// half a minute, since the clipboard may hold what should not lie about in memory.
    void prepare();

    /// Calls `taken` once, within a second, perhaps before this returns.
    void take(Taken taken);

    void ownerChanged();
    void connectionLost();
    void handle(const xcb_generic_event_t& event);

private:
    struct Outcome {
        std::optional<SelectionContent> content;
    };

    void read();
    void finish(std::optional<SelectionContent> content);
    void deliver();
    void forget();

    SelectionThreadX11& m_thread;
    AtomsX11& m_atoms;
    SelectionOwnerX11& m_own;
    SelectionInboxX11 m_inbox;
    std::unique_ptr<SelectionReaderX11> m_reader;
    std::optional<Outcome> m_outcome;
    std::vector<Taken> m_waiting;
    bool m_isPrepared = false;
    SelectionThreadX11::Timer m_deadline;
    SelectionThreadX11::Timer m_expiry;
};

}  // namespace sayloft
