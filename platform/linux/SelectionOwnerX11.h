// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/SelectionContentX11.h"
#include "platform/linux/SelectionSenderX11.h"
#include "platform/linux/SelectionThreadX11.h"

#include <functional>
#include <memory>

namespace sayloft {

/// One selection as its owner sees it: takes it, serves it as the ICCCM asks (TARGETS, TIMESTAMP,
/// MULTIPLE, INCR), and notices when somebody else takes it. On the selection thread.
class SelectionOwnerX11 {
public:
    using Content = std::shared_ptr<const SelectionContent>;

    /// A program asks for data (not for TARGETS and the like).
    struct Request {
        Content content;
        xcb_atom_t target;
        xcb_window_t requestor;
    };
    /// Called for every request that is granted; what it returns is called once the requestor has
    /// everything.
    using Requested = std::function<SelectionSenderX11::Sent(const Request&)>;

    SelectionOwnerX11(SelectionThreadX11& thread, AtomsX11& atoms, xcb_atom_t selection,
                      Requested requested);
    ~SelectionOwnerX11();
    SelectionOwnerX11(const SelectionOwnerX11&) = delete;
    SelectionOwnerX11& operator=(const SelectionOwnerX11&) = delete;

    /// Takes the selection, whoever has it.
    void take(Content content);

    /// Goes on with other content unless somebody else has the selection by now; with null content
    /// nobody has it afterwards.
    void replace(Content content);

    /// Whether the selection is still ours, as the server sees it now.
    [[nodiscard]] bool isOurs();

    /// Null when the selection is not ours, as far as we have heard.
    [[nodiscard]] const Content& content() const { return m_content; }

    [[nodiscard]] xcb_atom_t selection() const { return m_selection; }
    [[nodiscard]] xcb_window_t window() const { return m_window; }

    void handle(const xcb_generic_event_t& event);

private:
    void setOwner(Content content, xcb_timestamp_t time);
    void onRequest(const xcb_selection_request_event_t& request);
    [[nodiscard]] bool answer(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
    [[nodiscard]] bool answerMultiple(xcb_window_t requestor, xcb_atom_t property);
    [[nodiscard]] bool answerWithData(xcb_window_t requestor, xcb_atom_t target,
                                      xcb_atom_t property);
    [[nodiscard]] std::vector<xcb_atom_t> targets();
    void write(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
               const std::vector<std::uint32_t>& values);

    SelectionThreadX11& m_thread;
    AtomsX11& m_atoms;
    xcb_atom_t m_selection;
    xcb_window_t m_window;
    Requested m_requested;
    SelectionSenderX11 m_sender;
    Content m_content;
    xcb_timestamp_t m_ownedSince = XCB_CURRENT_TIME;
};

}  // namespace sayloft
