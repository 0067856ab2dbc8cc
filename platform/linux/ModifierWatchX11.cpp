// SPDX-License-Identifier: MIT
#include "platform/linux/ModifierWatchX11.h"

#include "platform/linux/XcbXkb.h"

#include <chrono>
#include <utility>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr auto reconnectInterval = 500ms;

// The highest bit tells only whether another client has sent the event.
constexpr unsigned eventTypeMask = 0x7f;

// The first bytes of every event of the XKB extension.
struct XkbEvent {
    std::uint8_t response_type;
    std::uint8_t xkbType;
};

void selectEvents(xcb_connection_t* connection) {
    constexpr std::uint16_t newKeyboard = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
    constexpr std::uint16_t map = XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t state = XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP |
                                       XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_ACTIONS;
    xcb_xkb_select_events_details_t details{};
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_BASE;
    details.stateDetails = XCB_XKB_STATE_PART_MODIFIER_BASE;
    xcb_xkb_select_events_aux(connection, XCB_XKB_ID_USE_CORE_KBD, newKeyboard | map | state, 0,
                              newKeyboard, mapParts, mapParts, &details);
}

std::uint8_t heldIn(const xcb_generic_event_t& stateNotify) {
    return reinterpret_cast<const xcb_xkb_state_notify_event_t&>(stateNotify).baseMods;
}

}  // namespace

ModifierWatchX11::ModifierWatchX11() {
    m_reconnectTimer.setInterval(reconnectInterval);
    QObject::connect(&m_reconnectTimer, &QTimer::timeout, &m_reconnectTimer,
                     [this] { reconnect(); });
}

bool ModifierWatchX11::start(FlagsChanged flagsChanged) {
    m_flagsChanged = std::move(flagsChanged);
    if (!m_connection && !connect())
        return false;
    m_reconnectTimer.stop();
    catchUp();
    return true;
}

bool ModifierWatchX11::connect() {
    XcbConnection connection = connectToXServer();
    if (!connection || !listen(connection.get()) || !readKeyMap(connection.get()))
        return false;
    m_connection = std::move(connection);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()),
                                                   QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { readEvents(); });
    return true;
}

bool ModifierWatchX11::listen(xcb_connection_t* connection) {
    if (!useXkb(connection))
        return false;
    m_firstXkbEvent = xcb_get_extension_data(connection, &xcb_xkb_id)->first_event;
    selectEvents(connection);
    return true;
}

bool ModifierWatchX11::readKeyMap(xcb_connection_t* connection) {
    const std::optional<KeyMapX11> map = KeyMapX11::read(connection);
    if (!map)
        return false;
    m_modifierFlags.emplace(*map);
    return true;
}

void ModifierWatchX11::readEvents() {
    while (m_connection) {
        const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(m_connection.get()));
        if (!event)
            break;
        handle(*event);
    }
    if (m_connection && xcb_connection_has_error(m_connection.get()) != 0)
        lost();
}

void ModifierWatchX11::handle(const xcb_generic_event_t& event) {
    const EventKind kind = kindOf(event);
    if (kind == EventKind::state && m_injections == 0)
        report(heldIn(event));
    // Where the map cannot be read the connection is lost, which the next read notices. What is
    // held is not asked for: the server announces a new keyboard also when another device is used
    // than before, and the changes that follow in the queue must not be skipped.
    if (kind == EventKind::map && readKeyMap(m_connection.get()) && m_injections == 0)
        report(m_lastHeld);
}

ModifierWatchX11::EventKind ModifierWatchX11::kindOf(const xcb_generic_event_t& event) const {
    if ((event.response_type & eventTypeMask) != m_firstXkbEvent)
        return EventKind::other;
    const auto type = reinterpret_cast<const XkbEvent&>(event).xkbType;
    return type == XCB_XKB_STATE_NOTIFY ? EventKind::state : EventKind::map;
}

// Reports the held state as the server has it now and skips the notifications that led to it.
void ModifierWatchX11::catchUp() {
    const std::optional<XkbState> state = readXkbState(m_connection.get());
    if (!state)
        return lost();
    for (const std::uint8_t held : skipUntil(*state))
        report(held);
    // Reading the map may have brought more, of which the notifier would not hear.
    readEvents();
}

// Takes everything out of the queue; `state` and the states that are newer.
std::vector<std::uint8_t> ModifierWatchX11::skipUntil(const XkbState& state) {
    std::vector<std::uint8_t> held{state.base};
    bool mapChanged = false;
    while (
        const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_queued_event(m_connection.get())}) {
        const EventKind kind = kindOf(*event);
        mapChanged = mapChanged || kind == EventKind::map;
        if (kind == EventKind::state && event->full_sequence >= state.sequence)
            held.push_back(heldIn(*event));
    }
    if (mapChanged)
        static_cast<void>(readKeyMap(m_connection.get()));
    return held;
}

void ModifierWatchX11::beginInjection() {
    if (m_injections == 0 && m_connection) {
        // After this round trip every earlier change lies in the queue.
        static_cast<void>(readXkbState(m_connection.get()));
        readEvents();
    }
    ++m_injections;
}

void ModifierWatchX11::endInjection() {
    if (m_injections == 0 || --m_injections != 0)
        return;
    if (m_connection)
        catchUp();
}

void ModifierWatchX11::report(std::uint8_t held) {
    m_lastHeld = held;
    const std::uint64_t flags = m_modifierFlags->flags(held);
    if (flags == m_lastReport)
        return;
    m_lastReport = flags;
    if (m_flagsChanged)
        m_flagsChanged(flags);
}

void ModifierWatchX11::lost() {
    // The notifier may be the one that called.
    m_notifier->setEnabled(false);
    m_notifier.release()->deleteLater();
    m_connection.reset();
    m_reconnectTimer.start();
    report(0);
}

void ModifierWatchX11::reconnect() {
    if (!connect())
        return;
    m_reconnectTimer.stop();
    if (m_injections == 0)
        catchUp();
}

}  // namespace sayloft
