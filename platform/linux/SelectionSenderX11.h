// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/SelectionContentX11.h"
#include "platform/linux/SelectionThreadX11.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace sayloft {

/// Writes values into properties of other programs' windows; large ones piece by piece (INCR), each
/// when the requestor has taken the one before. A requestor that takes nothing for ten seconds, or
/// whose window goes, is forgotten. On the selection thread.
class SelectionSenderX11 {
public:
    /// Called when the requestor has everything.
    using Sent = std::function<void()>;

    SelectionSenderX11(SelectionThreadX11& thread, AtomsX11& atoms);
    ~SelectionSenderX11();
    SelectionSenderX11(const SelectionSenderX11&) = delete;
    SelectionSenderX11& operator=(const SelectionSenderX11&) = delete;

    /// `sent` may be called before this returns; it is not called for a requestor that is
    /// forgotten.
    void send(xcb_window_t requestor, xcb_atom_t property, const SelectionValue& value, Sent sent);

    void handle(const xcb_generic_event_t& event);

private:
    struct Transfer;

    void startTransfer(xcb_window_t requestor, xcb_atom_t property, const SelectionValue& value,
                       Sent sent);
    void sendNextPiece(Transfer& transfer);
    void onTaken(const xcb_property_notify_event_t& event);
    void forgetWindow(xcb_window_t requestor);
    void remove(const Transfer& transfer);
    void watch(xcb_window_t requestor, std::uint32_t events);

    SelectionThreadX11& m_thread;
    AtomsX11& m_atoms;
    qsizetype m_largestPiece;
    std::vector<std::unique_ptr<Transfer>> m_transfers;
};

}  // namespace sayloft
