// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionSenderX11.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr auto FORGET_REQUESTOR_AFTER = 10s;
constexpr qsizetype PREFERRED_PIECE = qsizetype{256} * 1024;
constexpr qsizetype REQUEST_HEADER = 64;
constexpr qsizetype BYTES_PER_REQUEST_UNIT = 4;

// A multiple of four bytes, so that no unit is ever cut.
qsizetype largestPiece(xcb_connection_t* connection) {
    const qsizetype longest =
        qsizetype{xcb_get_maximum_request_length(connection)} * BYTES_PER_REQUEST_UNIT;
    return std::clamp(longest - REQUEST_HEADER, BYTES_PER_REQUEST_UNIT, PREFERRED_PIECE);
}

std::uint32_t units(qsizetype bytes, const SelectionForm& form) {
    return static_cast<std::uint32_t>(bytes / (form.format / 8));
}

}  // namespace

struct SelectionSenderX11::Transfer {
    Transfer(SelectionThreadX11& thread, xcb_window_t toWindow, xcb_atom_t toProperty,
             SelectionValue toSend, Sent whenSent)
        : requestor(toWindow),
          property(toProperty),
          value(std::move(toSend)),
          sent(std::move(whenSent)),
          timer(thread) {}

    xcb_window_t requestor;
    xcb_atom_t property;
    SelectionValue value;
    Sent sent;
    qsizetype offset = 0;
    bool endMarkSent = false;
    SelectionThreadX11::Timer timer;
};

SelectionSenderX11::SelectionSenderX11(SelectionThreadX11& thread, AtomsX11& atoms)
    : m_thread(thread), m_atoms(atoms), m_largestPiece(largestPiece(thread.connection())) {}

SelectionSenderX11::~SelectionSenderX11() = default;

void SelectionSenderX11::send(xcb_window_t requestor, xcb_atom_t property,
                              const SelectionValue& value, Sent sent) {
    if (value.data.size() > m_largestPiece) {
        startTransfer(requestor, property, value, std::move(sent));
        return;
    }
    xcb_change_property(m_thread.connection(), XCB_PROP_MODE_REPLACE, requestor, property,
                        value.form.type, value.form.format, units(value.data.size(), value.form),
                        value.data.constData());
    sent();
}

void SelectionSenderX11::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
        case XCB_PROPERTY_NOTIFY:
            onTaken(reinterpret_cast<const xcb_property_notify_event_t&>(event));
            break;
        case XCB_DESTROY_NOTIFY:
            forgetWindow(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
            break;
        default:
            break;
    }
}

void SelectionSenderX11::startTransfer(xcb_window_t requestor, xcb_atom_t property,
                                       const SelectionValue& value, Sent sent) {
    watch(requestor, XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    auto transfer =
        std::make_unique<Transfer>(m_thread, requestor, property, value, std::move(sent));
    const Transfer* started = transfer.get();
    transfer->timer.start(FORGET_REQUESTOR_AFTER, [this, started] { remove(*started); });
    m_transfers.push_back(std::move(transfer));
    const auto size = static_cast<std::uint32_t>(value.data.size());
    xcb_change_property(m_thread.connection(), XCB_PROP_MODE_REPLACE, requestor, property,
                        m_atoms.atom("INCR"), 32, 1, &size);
}

// Nothing is left: an empty piece says that this was all.
void SelectionSenderX11::sendNextPiece(Transfer& transfer) {
    const SelectionValue& value = transfer.value;
    const qsizetype size = std::min(m_largestPiece, value.data.size() - transfer.offset);
    xcb_change_property(m_thread.connection(), XCB_PROP_MODE_APPEND, transfer.requestor,
                        transfer.property, value.form.type, value.form.format,
                        units(size, value.form), value.data.constData() + transfer.offset);
    transfer.offset += size;
    transfer.endMarkSent = size == 0;
    transfer.timer.start(FORGET_REQUESTOR_AFTER, [this, &transfer] { remove(transfer); });
}

void SelectionSenderX11::onTaken(const xcb_property_notify_event_t& event) {
    if (event.state != XCB_PROPERTY_DELETE)
        return;
    const auto found =
        std::find_if(m_transfers.begin(), m_transfers.end(), [&](const auto& transfer) {
            return transfer->requestor == event.window && transfer->property == event.atom;
        });
    if (found == m_transfers.end())
        return;
    Transfer& transfer = **found;
    sendNextPiece(transfer);
    if (!transfer.endMarkSent)
        return;
    const Sent sent = std::move(transfer.sent);
    remove(transfer);
    sent();
}

void SelectionSenderX11::forgetWindow(xcb_window_t requestor) {
    std::erase_if(m_transfers,
                  [&](const auto& transfer) { return transfer->requestor == requestor; });
}

void SelectionSenderX11::remove(const Transfer& transfer) {
    const xcb_window_t requestor = transfer.requestor;
    std::erase_if(m_transfers, [&](const auto& other) { return other.get() == &transfer; });
    const bool isNeeded =
        std::any_of(m_transfers.begin(), m_transfers.end(),
                    [&](const auto& other) { return other->requestor == requestor; });
    if (!isNeeded)
        watch(requestor, XCB_EVENT_MASK_NO_EVENT);
}

void SelectionSenderX11::watch(xcb_window_t requestor, std::uint32_t events) {
    xcb_change_window_attributes(m_thread.connection(), requestor, XCB_CW_EVENT_MASK, &events);
}

}  // namespace sayloft
