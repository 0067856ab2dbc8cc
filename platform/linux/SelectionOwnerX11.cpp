// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionOwnerX11.h"

#include "platform/linux/SelectionWindowX11.h"

#include <algorithm>
#include <utility>

namespace sayloft {
namespace {

constexpr std::uint32_t LONGEST_MULTIPLE = 4096;

std::vector<std::uint32_t> readLongs(xcb_connection_t* connection, xcb_window_t window,
                                     xcb_atom_t property) {
    const auto cookie = xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY,
                                         0, LONGEST_MULTIPLE);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

}  // namespace

SelectionOwnerX11::SelectionOwnerX11(SelectionThreadX11& thread, AtomsX11& atoms,
                                     xcb_atom_t selection, Requested requested)
    : m_thread(thread),
      m_atoms(atoms),
      m_selection(selection),
      m_window(createSelectionWindow(thread.connection())),
      m_requested(std::move(requested)),
      m_sender(thread, atoms) {}

SelectionOwnerX11::~SelectionOwnerX11() {
    xcb_destroy_window(m_thread.connection(), m_window);
}

void SelectionOwnerX11::take(Content content) {
    setOwner(std::move(content), m_thread.serverTime(m_window));
}

// Between the look at the owner and the change of it nobody else may take the selection, so nobody
// else is served for that moment. The time, which has to be waited for, is taken before.
void SelectionOwnerX11::replace(Content content) {
    const xcb_timestamp_t time = m_thread.serverTime(m_window);
    const XcbServerGrab nobodyElse(m_thread.connection());
    if (isOurs())
        setOwner(std::move(content), time);
}

bool SelectionOwnerX11::isOurs() {
    return m_content && selectionOwner(m_thread.connection(), m_selection) == m_window;
}

void SelectionOwnerX11::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_REQUEST) {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == m_window && request.selection == m_selection)
            onRequest(request);
    } else if (type == XCB_SELECTION_CLEAR) {
        const auto& clear = reinterpret_cast<const xcb_selection_clear_event_t&>(event);
        if (clear.owner == m_window && clear.selection == m_selection)
            m_content = nullptr;
    } else {
        m_sender.handle(event);
    }
}

void SelectionOwnerX11::setOwner(Content content, xcb_timestamp_t time) {
    const xcb_window_t owner = content ? m_window : xcb_window_t{XCB_WINDOW_NONE};
    xcb_set_selection_owner(m_thread.connection(), owner, m_selection, time);
    m_content = std::move(content);
    m_ownedSince = time;
    if (selectionOwner(m_thread.connection(), m_selection) != m_window)
        m_content = nullptr;
}

void SelectionOwnerX11::onRequest(const xcb_selection_request_event_t& request) {
    // Clients from before the ICCCM name no property.
    const xcb_atom_t property =
        request.property == XCB_ATOM_NONE ? request.target : request.property;
    const bool isAnswered =
        m_content &&
        (request.target == m_atoms.atom("MULTIPLE")
             ? request.property != XCB_ATOM_NONE && answerMultiple(request.requestor, property)
             : answer(request.requestor, request.target, property));
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isAnswered ? property : xcb_atom_t{XCB_ATOM_NONE};
    xcb_send_event(m_thread.connection(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&notify));
    xcb_flush(m_thread.connection());
}

bool SelectionOwnerX11::answer(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
    if (target == m_atoms.atom("TARGETS")) {
        write(requestor, property, XCB_ATOM_ATOM, targets());
        return true;
    }
    if (target == m_atoms.atom("TIMESTAMP")) {
        write(requestor, property, XCB_ATOM_INTEGER, {m_ownedSince});
        return true;
    }
    return answerWithData(requestor, target, property);
}

// Pairs of target and property; the property of a pair that we cannot serve becomes None.
bool SelectionOwnerX11::answerMultiple(xcb_window_t requestor, xcb_atom_t property) {
    std::vector<std::uint32_t> pairs = readLongs(m_thread.connection(), requestor, property);
    if (pairs.empty() || pairs.size() % 2 != 0)
        return false;
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        if (pairs[i + 1] == XCB_ATOM_NONE || !answer(requestor, pairs[i], pairs[i + 1]))
            pairs[i + 1] = XCB_ATOM_NONE;
    }
    write(requestor, property, m_atoms.atom("ATOM_PAIR"), pairs);
    return true;
}

bool SelectionOwnerX11::answerWithData(xcb_window_t requestor, xcb_atom_t target,
                                       xcb_atom_t property) {
    const auto value =
        std::find_if(m_content->begin(), m_content->end(),
                     [&](const SelectionValue& candidate) { return candidate.target == target; });
    if (value == m_content->end())
        return false;
    auto sent = m_requested({.content = m_content, .target = target, .requestor = requestor});
    m_sender.send(requestor, property, *value, std::move(sent));
    return true;
}

std::vector<xcb_atom_t> SelectionOwnerX11::targets() {
    std::vector<xcb_atom_t> targets{m_atoms.atom("TARGETS"), m_atoms.atom("MULTIPLE"),
                                    m_atoms.atom("TIMESTAMP")};
    for (const SelectionValue& value : *m_content)
        targets.push_back(value.target);
    return targets;
}

void SelectionOwnerX11::write(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                              const std::vector<std::uint32_t>& values) {
    xcb_change_property(m_thread.connection(), XCB_PROP_MODE_REPLACE, requestor, property, type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

}  // namespace sayloft
