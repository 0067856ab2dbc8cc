// SPDX-License-Identifier: MIT
#include "platform/linux/SelectionReaderX11.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using Clock = SelectionThreadX11::Clock;

constexpr auto LONGEST_SILENCE = 400ms;
constexpr auto LONGEST_READ = 1000ms;
constexpr std::uint32_t WHOLE_PROPERTY = 0x1fffffff;

}  // namespace

SelectionReaderX11::SelectionReaderX11(SelectionThreadX11& thread, AtomsX11& atoms,
                                       SelectionInboxX11& inbox, xcb_atom_t selection,
                                       Finished finished)
    : m_thread(thread),
      m_atoms(atoms),
      m_inbox(inbox),
      m_selection(selection),
      m_property(inbox.open()),
      m_finished(std::move(finished)),
      m_time(thread.serverTime(inbox.window())),
      m_started(Clock::now()),
      m_lastProgress(m_started),
      m_timer(thread) {
    ask(m_atoms.atom("TARGETS"));
    armTimer();
}

SelectionReaderX11::~SelectionReaderX11() {
    m_inbox.close();
}

void SelectionReaderX11::hurry() {
    m_isHurried = true;
    armTimer();
}

void SelectionReaderX11::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (type == XCB_SELECTION_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (isAnswer(notify) && m_step != Step::pieces)
            onNotify(notify);
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == m_inbox.window() && change.atom == m_property &&
            change.state == XCB_PROPERTY_NEW_VALUE && m_step == Step::pieces)
            onPiece();
    }
}

void SelectionReaderX11::ask(xcb_atom_t target) {
    m_target = target;
    xcb_delete_property(m_thread.connection(), m_inbox.window(), m_property);
    xcb_convert_selection(m_thread.connection(), m_inbox.window(), m_selection, target, m_property,
                          m_time);
}

void SelectionReaderX11::askForNext() {
    if (m_remaining.empty()) {
        finish(std::move(m_content));
        return;
    }
    m_step = Step::value;
    const xcb_atom_t target = m_remaining.front();
    m_remaining.pop_front();
    ask(target);
}

// A refusal names no property. That of a reading that was given up bears an earlier time.
bool SelectionReaderX11::isAnswer(const xcb_selection_notify_event_t& event) const {
    const bool isLate = event.property == XCB_ATOM_NONE
                            ? event.time != XCB_CURRENT_TIME && event.time < m_time
                            : event.property != m_property;
    return event.requestor == m_inbox.window() && event.target == m_target && !isLate;
}

void SelectionReaderX11::onNotify(const xcb_selection_notify_event_t& event) {
    noticeProgress();
    if (event.property != XCB_ATOM_NONE) {
        m_step == Step::targets ? onTargets() : onValue();
        return;
    }
    // An owner that does not even say what it has may still give text, as programs older than the
    // ICCCM do.
    if (m_step == Step::targets)
        m_remaining = {m_atoms.atom("UTF8_STRING"), m_atoms.atom("STRING")};
    askForNext();
}

void SelectionReaderX11::onTargets() {
    const std::optional<SelectionValue> value = takeProperty();
    std::vector<xcb_atom_t> offered;
    if (value && value->form.format == 32 && !value->data.isEmpty()) {
        offered.resize(static_cast<std::size_t>(value->data.size()) / sizeof(xcb_atom_t));
        std::memcpy(offered.data(), value->data.constData(), offered.size() * sizeof(xcb_atom_t));
    }
    const std::vector<xcb_atom_t> wanted = targetsToSave(m_atoms, offered);
    m_remaining.assign(wanted.begin(), wanted.end());
    askForNext();
}

void SelectionReaderX11::onValue() {
    std::optional<SelectionValue> value = takeProperty();
    if (value && value->form.type == m_atoms.atom("INCR")) {
        // Taking the property has told the owner to send the first piece.
        m_step = Step::pieces;
        m_incoming = {.target = m_target, .form = {}, .data = {}};
        return;
    }
    if (value)
        m_content.push_back(std::move(*value));
    askForNext();
}

void SelectionReaderX11::onPiece() {
    const std::optional<SelectionValue> piece = takeProperty();
    if (!piece)
        return;
    noticeProgress();
    if (!piece->data.isEmpty()) {
        m_incoming.form = piece->form;
        m_incoming.data += piece->data;
        return;
    }
    if (m_incoming.form.type == XCB_ATOM_NONE)
        m_incoming.form = piece->form;
    m_content.push_back(std::exchange(m_incoming, {}));
    askForNext();
}

void SelectionReaderX11::noticeProgress() {
    m_lastProgress = Clock::now();
    armTimer();
}

void SelectionReaderX11::armTimer() {
    const auto silence = m_isHurried ? LONGEST_SILENCE : LONGEST_READ;
    const auto end = std::min(m_started + LONGEST_READ, m_lastProgress + silence);
    m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()),
                  [this] { finish(std::nullopt); });
}

void SelectionReaderX11::finish(std::optional<SelectionContent> content) {
    m_timer.stop();
    const Finished finished = std::move(m_finished);
    finished(std::move(content));
}

std::optional<SelectionValue> SelectionReaderX11::takeProperty() {
    const auto cookie = xcb_get_property(m_thread.connection(), 1, m_inbox.window(), m_property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, WHOLE_PROPERTY);
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_thread.connection(), cookie, nullptr));
    if (!reply || reply->type == XCB_ATOM_NONE)
        return std::nullopt;
    return SelectionValue{
        .target = m_target,
        .form = {.type = reply->type, .format = reply->format},
        .data = QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           xcb_get_property_value_length(reply.get()))};
}

}  // namespace sayloft
