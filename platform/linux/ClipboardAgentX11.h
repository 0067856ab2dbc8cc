// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"
#include "platform/linux/AtomsX11.h"
#include "platform/linux/FocusX11.h"
#include "platform/linux/PrimaryLoanX11.h"
#include "platform/linux/SelectionOwnerX11.h"
#include "platform/linux/SelectionThreadX11.h"
#include "platform/linux/SnapshotKeeperX11.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace sayloft {

/// What ClipboardX11 does, on its thread. Callbacks are called there, perhaps before the function
/// that takes them returns, and also when the server has gone; one may be called twice.
class ClipboardAgentX11 {
public:
    using Task = SelectionThreadX11::Task;
    using SnapshotTaken = std::function<void(std::optional<ClipboardSnapshot>)>;

    explicit ClipboardAgentX11(SelectionThreadX11& thread);

    void prepareSnapshot() { m_keeper.prepare(); }
    void takeSnapshot(SnapshotTaken taken);
    void setText(const QString& text, ClipboardStay stay);
    void whenTextFetched(Task fetched);
    void restore(const ClipboardSnapshot& snapshot);
    void offerOnPrimary(Task ready);

    /// Asks the clipboard manager to save what we own; `done` when it has, refuses, or there is
    /// none.
    void handOver(Task done);

    void handle(const xcb_generic_event_t& event);
    void connectionLost();

private:
    void listenForOwners();
    void ownerChanged(xcb_atom_t selection);
    [[nodiscard]] Task onRequested(const SelectionOwnerX11::Request& request);
    void onTextFetched();
    void remember(const SelectionContent& content);

    SelectionThreadX11& m_thread;
    AtomsX11 m_atoms;
    FocusX11 m_focus;
    SelectionOwnerX11 m_owner;
    SnapshotKeeperX11 m_keeper;
    PrimaryLoanX11 m_primary;

    SelectionOwnerX11::Content m_text;
    SelectionForms m_forms;
    bool m_isTextFetched = false;
    std::vector<Task> m_fetchWaiters;
    Task m_handedOver;
    std::uint8_t m_firstFixesEvent = 0;
};

}  // namespace sayloft
