// SPDX-License-Identifier: MIT
#include "tests/support/SelectionTestOwner.h"

#include "platform/linux/SelectionWindowX11.h"

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace sayloft::test {
namespace {

constexpr int DRIBBLE_EVERY_MS = 50;

}  // namespace

SelectionTestOwner::SelectionTestOwner(std::vector<Target> targets, const QByteArray& selection)
    : m_connection(connectToXServer()),
      m_atoms(m_connection.get()),
      m_targets(std::move(targets)),
      m_window(createSelectionWindow(m_connection.get())) {
    const xcb_atom_t atom = m_atoms.atom(selection);
    xcb_set_selection_owner(m_connection.get(), m_window, atom, XCB_CURRENT_TIME);
    if (selectionOwner(m_connection.get(), atom) != m_window)
        throw std::runtime_error("the test owner did not get the selection");
    m_thread = std::thread([this] { serve(); });
}

SelectionTestOwner::~SelectionTestOwner() {
    m_stopping = true;
    m_thread.join();
}

QList<QByteArray> SelectionTestOwner::asked() {
    const std::lock_guard lock(m_mutex);
    return m_asked;
}

void SelectionTestOwner::serve() {
    pollfd source{
        .fd = xcb_get_file_descriptor(m_connection.get()), .events = POLLIN, .revents = 0};
    while (!m_stopping && xcb_connection_has_error(m_connection.get()) == 0) {
        xcb_flush(m_connection.get());
        while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
            if ((event->response_type & 0x7f) == XCB_SELECTION_REQUEST)
                onRequest(*reinterpret_cast<const xcb_selection_request_event_t*>(event.get()));
        }
        if (poll(&source, 1, DRIBBLE_EVERY_MS) == 0 && m_dribbleTo != XCB_WINDOW_NONE)
            dribble();
    }
}

void SelectionTestOwner::onRequest(const xcb_selection_request_event_t& request) {
    const QByteArray name = m_atoms.name(request.target);
    {
        const std::lock_guard lock(m_mutex);
        m_asked.append(name);
    }
    const auto target = std::find_if(m_targets.begin(), m_targets.end(),
                                     [&](const Target& each) { return each.name == name; });
    bool isAnswered = false;
    if (target != m_targets.end()) {
        if (target->manner == Manner::staysSilent)
            return;
        std::this_thread::sleep_for(target->delay);
        isAnswered = write(request, *target);
    } else if (name == "TARGETS") {
        writeTargets(request);
        isAnswered = true;
    }
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = isAnswered ? request.property : xcb_atom_t{XCB_ATOM_NONE};
    xcb_send_event(m_connection.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&notify));
    xcb_flush(m_connection.get());
}

bool SelectionTestOwner::write(const xcb_selection_request_event_t& request, const Target& target) {
    if (target.manner == Manner::refuses)
        return false;
    if (target.manner == Manner::dribbles) {
        const std::uint32_t size = 1;
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, m_atoms.atom("INCR"), 32, 1, &size);
        m_dribbleTo = request.requestor;
        m_dribbleProperty = request.property;
        return true;
    }
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                        request.property,
                        m_atoms.atom(target.type.isEmpty() ? target.name : target.type),
                        static_cast<std::uint8_t>(target.format),
                        static_cast<std::uint32_t>(target.data.size() / (target.format / 8)),
                        target.data.constData());
    return true;
}

void SelectionTestOwner::writeTargets(const xcb_selection_request_event_t& request) {
    std::vector<xcb_atom_t> atoms{m_atoms.atom("TARGETS")};
    for (const Target& target : m_targets)
        atoms.push_back(m_atoms.atom(target.name));
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                        request.property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

void SelectionTestOwner::dribble() {
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_dribbleTo, m_dribbleProperty,
                        XCB_ATOM_STRING, 8, 4, "drip");
    xcb_flush(m_connection.get());
}

}  // namespace sayloft::test
