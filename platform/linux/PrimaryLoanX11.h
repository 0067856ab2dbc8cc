// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/SelectionOwnerX11.h"
#include "platform/linux/SelectionThreadX11.h"
#include "platform/linux/SnapshotKeeperX11.h"

#include <optional>

namespace sayloft {

/// PRIMARY, borrowed for one paste into a terminal and given back by itself. On the selection
/// thread.
class PrimaryLoanX11 {
public:
    PrimaryLoanX11(SelectionThreadX11& thread, AtomsX11& atoms,
                   SelectionOwnerX11::Requested requested);

    /// Saves PRIMARY, takes it for `text`, then calls `ready`. During a loan the selection that the
    /// first one has saved is kept.
    void offer(SelectionOwnerX11::Content text, SelectionThreadX11::Task ready);

    /// The focused application has read the text: what follows may be a second reading of it.
    void textFetched();

    /// Unless somebody has taken PRIMARY since. A selection that could not be saved is not
    /// replaced by nothing: the text stays.
    void giveBack();

    void ownerChanged() { m_keeper.ownerChanged(); }
    void connectionLost() { m_keeper.connectionLost(); }
    void handle(const xcb_generic_event_t& event);
    [[nodiscard]] xcb_atom_t selection() const { return m_owner.selection(); }

private:
    void lend(SelectionOwnerX11::Content text);

    SelectionOwnerX11 m_owner;
    SnapshotKeeperX11 m_keeper;
    std::optional<SelectionContent> m_saved;
    bool m_isLent = false;
    SelectionThreadX11::Clock::time_point m_lentAt;
    SelectionThreadX11::Timer m_timer;
};

}  // namespace sayloft
