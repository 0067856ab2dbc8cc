// SPDX-License-Identifier: MIT
#include "tests/support/SelectionRequestor.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto DEFAULT_DEADLINE = 10s;
constexpr const char* PROPERTY = "REQUESTOR_DATA";

XcbConnection connected() {
    XcbConnection connection = connectToXServer();
    if (!connection)
        throw std::runtime_error("no X server for the requestor");
    return connection;
}

template <typename Event>
const Event& as(const XcbOwned<xcb_generic_event_t>& event) {
    return *reinterpret_cast<const Event*>(event.get());
}

bool isOfType(const XcbOwned<xcb_generic_event_t>& event, int type) {
    return (event->response_type & 0x7f) == type;
}

}  // namespace

SelectionRequestor::SelectionRequestor()
    : m_connection(connected()),
      m_atoms(connection()),
      m_window(xcb_generate_id(m_connection.get())) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_create_window(connection(), XCB_COPY_FROM_PARENT, m_window, rootWindow(connection()), 10,
                      10, 200, 100, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_EVENT_MASK, &events);
    xcb_flush(connection());
}

SelectionRequestor::~SelectionRequestor() = default;

std::optional<SelectionReply> SelectionRequestor::read(const QByteArray& target,
                                                       const QByteArray& selection,
                                                       std::chrono::milliseconds deadline) {
    const Deadline end = Clock::now() + deadline;
    if (!convert(selection, target, end))
        return std::nullopt;
    return takeReply(m_atoms.atom(PROPERTY), end);
}

QList<QByteArray> SelectionRequestor::targets(const QByteArray& selection) {
    const auto reply = read("TARGETS", selection);
    QList<QByteArray> names;
    if (!reply)
        return names;
    std::vector<xcb_atom_t> atoms(static_cast<std::size_t>(reply->data.size()) / 4);
    std::memcpy(atoms.data(), reply->data.constData(), atoms.size() * 4);
    for (const xcb_atom_t atom : atoms)
        names.append(m_atoms.name(atom));
    return names;
}

std::vector<std::optional<SelectionReply>> SelectionRequestor::readMultiple(
    const QList<QByteArray>& targets, const QByteArray& selection) {
    const Deadline end = Clock::now() + DEFAULT_DEADLINE;
    std::vector<std::uint32_t> pairs;
    for (const QByteArray& target : targets) {
        pairs.push_back(m_atoms.atom(target));
        pairs.push_back(m_atoms.atom("REQUESTOR_" + target));
    }
    const xcb_atom_t property = m_atoms.atom(PROPERTY);
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, m_window, property,
                        m_atoms.atom("ATOM_PAIR"), 32, static_cast<std::uint32_t>(pairs.size()),
                        pairs.data());
    if (!convert(selection, "MULTIPLE", end))
        return {};
    const auto answered = takeProperty(property);
    if (!answered || static_cast<std::size_t>(answered->data.size()) != pairs.size() * 4)
        return {};
    std::memcpy(pairs.data(), answered->data.constData(), pairs.size() * 4);
    std::vector<std::optional<SelectionReply>> replies;
    for (std::size_t i = 1; i < pairs.size(); i += 2)
        replies.push_back(pairs[i] == XCB_ATOM_NONE ? std::nullopt : takeReply(pairs[i], end));
    return replies;
}

bool SelectionRequestor::beginIncremental(const QByteArray& target) {
    return convert("CLIPBOARD", target, Clock::now() + DEFAULT_DEADLINE);
}

QByteArray SelectionRequestor::finishIncremental() {
    const auto reply = takeReply(m_atoms.atom(PROPERTY), Clock::now() + DEFAULT_DEADLINE);
    return reply && reply->wasIncremental ? reply->data : QByteArray();
}

void SelectionRequestor::takeFocus(const QByteArray& windowClass) {
    const QByteArray value = "instance" + QByteArray(1, '\0') + windowClass + QByteArray(1, '\0');
    xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(value.size()),
                        value.constData());
    xcb_map_window(connection(), m_window);
    xcb_flush(connection());
    const Deadline end = Clock::now() + DEFAULT_DEADLINE;
    while (const auto event = nextEvent(end)) {
        if (isOfType(event, XCB_MAP_NOTIFY))
            break;
    }
    xcb_set_input_focus(connection(), XCB_INPUT_FOCUS_POINTER_ROOT, m_window, XCB_CURRENT_TIME);
    const XcbOwned<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(connection(), xcb_get_input_focus(connection()), nullptr));
    if (!focus || focus->focus != m_window)
        throw std::runtime_error("the requestor did not get the focus");
}

xcb_window_t SelectionRequestor::owner(const QByteArray& selection) {
    const XcbOwned<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection(), xcb_get_selection_owner(connection(), m_atoms.atom(selection)), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

bool SelectionRequestor::convert(const QByteArray& selection, const QByteArray& target,
                                 Deadline deadline) {
    xcb_convert_selection(connection(), m_window, m_atoms.atom(selection), m_atoms.atom(target),
                          m_atoms.atom(PROPERTY), XCB_CURRENT_TIME);
    xcb_flush(connection());
    while (const auto event = nextEvent(deadline)) {
        if (!isOfType(event, XCB_SELECTION_NOTIFY))
            continue;
        const auto& notify = as<xcb_selection_notify_event_t>(event);
        if (notify.target == m_atoms.atom(target) && notify.selection == m_atoms.atom(selection))
            return notify.property != XCB_ATOM_NONE;
    }
    return false;
}

std::optional<SelectionReply> SelectionRequestor::takeReply(xcb_atom_t property,
                                                            Deadline deadline) {
    auto reply = takeProperty(property);
    if (!reply || reply->type != "INCR")
        return reply;
    reply->wasIncremental = true;
    reply->data = takePieces(*reply, property, deadline);
    return reply;
}

std::optional<SelectionReply> SelectionRequestor::takeProperty(xcb_atom_t property) {
    const auto cookie = xcb_get_property(connection(), 1, m_window, property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 0x1fffffff);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return std::nullopt;
    return SelectionReply{
        .type = m_atoms.name(reply->type),
        .format = reply->format,
        .data = QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           xcb_get_property_value_length(reply.get()))};
}

QByteArray SelectionRequestor::takePieces(SelectionReply& reply, xcb_atom_t property,
                                          Deadline deadline) {
    QByteArray data;
    while (const auto event = nextEvent(deadline)) {
        if (!isOfType(event, XCB_PROPERTY_NOTIFY))
            continue;
        const auto& change = as<xcb_property_notify_event_t>(event);
        if (change.atom != property || change.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const auto piece = takeProperty(property);
        if (!piece)
            continue;
        reply.type = piece->type;
        reply.format = piece->format;
        if (piece->data.isEmpty())
            return data;
        data += piece->data;
    }
    throw std::runtime_error("the owner stopped in the middle of its data");
}

XcbOwned<xcb_generic_event_t> SelectionRequestor::nextEvent(Deadline deadline) {
    while (true) {
        xcb_flush(connection());
        if (XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection())})
            return event;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0 || xcb_connection_has_error(connection()) != 0)
            return nullptr;
        pollfd source{.fd = xcb_get_file_descriptor(connection()), .events = POLLIN, .revents = 0};
        poll(&source, 1, static_cast<int>(left));
    }
}

}  // namespace sayloft::test
