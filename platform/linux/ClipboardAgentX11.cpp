// SPDX-License-Identifier: MIT
#include "platform/linux/ClipboardAgentX11.h"

#include "platform/linux/SelectionWindowX11.h"

#include <xcb/xfixes.h>

#include <memory>
#include <utility>

namespace sayloft {

ClipboardAgentX11::ClipboardAgentX11(SelectionThreadX11& thread)
    : m_thread(thread),
      m_atoms(thread.connection()),
      m_focus(thread.connection()),
      m_owner(thread, m_atoms, m_atoms.atom("CLIPBOARD"),
              [this](const auto& request) { return onRequested(request); }),
      m_keeper(thread, m_atoms, m_owner),
      m_primary(thread, m_atoms, [this](const auto& request) { return onRequested(request); }) {
    listenForOwners();
}

void ClipboardAgentX11::takeSnapshot(SnapshotTaken taken) {
    m_keeper.take([this, taken = std::move(taken)](const std::optional<SelectionContent>& content) {
        if (!content) {
            taken(std::nullopt);
            return;
        }
        remember(*content);
        taken(snapshotOf(m_atoms, *content));
    });
}

void ClipboardAgentX11::setText(const QString& text, ClipboardStay stay) {
    m_text = std::make_shared<const SelectionContent>(textContent(m_atoms, text, stay));
    m_isTextFetched = false;
    m_owner.take(m_text);
}

void ClipboardAgentX11::whenTextFetched(Task fetched) {
    if (m_isTextFetched)
        fetched();
    else
        m_fetchWaiters.push_back(std::move(fetched));
}

void ClipboardAgentX11::restore(const ClipboardSnapshot& snapshot) {
    m_primary.giveBack();
    SelectionContent content = contentOf(m_atoms, snapshot, m_forms);
    m_owner.replace(content.empty() ? nullptr
                                    : std::make_shared<const SelectionContent>(std::move(content)));
}

void ClipboardAgentX11::offerOnPrimary(Task ready) {
    if (m_text)
        m_primary.offer(m_text, std::move(ready));
    else
        ready();
}

void ClipboardAgentX11::handOver(Task done) {
    const xcb_atom_t manager = m_atoms.atom("CLIPBOARD_MANAGER");
    const bool hasManager = selectionOwner(m_thread.connection(), manager) != XCB_WINDOW_NONE;
    if (!m_owner.isOurs() || !hasManager) {
        done();
        return;
    }
    m_handedOver = std::move(done);
    const xcb_atom_t property = m_atoms.atom("SAYLOFT_SAVED");
    std::vector<xcb_atom_t> targets;
    for (const SelectionValue& value : *m_owner.content())
        targets.push_back(value.target);
    xcb_change_property(m_thread.connection(), XCB_PROP_MODE_REPLACE, m_owner.window(), property,
                        XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(targets.size()),
                        targets.data());
    xcb_convert_selection(m_thread.connection(), m_owner.window(), manager,
                          m_atoms.atom("SAVE_TARGETS"), property,
                          m_thread.serverTime(m_owner.window()));
}

void ClipboardAgentX11::handle(const xcb_generic_event_t& event) {
    const int type = event.response_type & 0x7f;
    if (m_firstFixesEvent != 0 && type == m_firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        ownerChanged(reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event).selection);
        return;
    }
    m_owner.handle(event);
    m_keeper.handle(event);
    m_primary.handle(event);
    if (type != XCB_SELECTION_NOTIFY || !m_handedOver)
        return;
    if (reinterpret_cast<const xcb_selection_notify_event_t&>(event).requestor == m_owner.window())
        std::exchange(m_handedOver, nullptr)();
}

void ClipboardAgentX11::connectionLost() {
    m_keeper.connectionLost();
    m_primary.connectionLost();
    if (m_handedOver)
        std::exchange(m_handedOver, nullptr)();
}

void ClipboardAgentX11::listenForOwners() {
    xcb_connection_t* connection = m_thread.connection();
    const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0)
        return;
    // The server refuses every other request of a client that has not asked for the version.
    const XcbOwned<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 1, 0), nullptr));
    m_firstFixesEvent = extension->first_event;
    const std::uint32_t changes = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                  XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;
    for (const xcb_atom_t selection : {m_owner.selection(), m_primary.selection()})
        xcb_xfixes_select_selection_input(connection, m_owner.window(), selection, changes);
}

void ClipboardAgentX11::ownerChanged(xcb_atom_t selection) {
    if (selection == m_owner.selection())
        m_keeper.ownerChanged();
    else if (selection == m_primary.selection())
        m_primary.ownerChanged();
}

// Clipboard managers read the text too, often first; only the focused program's reading is the
// paste, and who is focused is asked now: it may be another one by the time a long text is through.
ClipboardAgentX11::Task ClipboardAgentX11::onRequested(const SelectionOwnerX11::Request& request) {
    const bool isTheText = m_text && request.content == m_text;
    const bool isPaste = isTheText && request.target != m_atoms.atom(SECRECY_HINT) &&
                         m_focus.sameProgram(request.requestor, m_focus.focused().window);
    if (!isPaste)
        return [] {};
    return [this, text = m_text] {
        if (text == m_text)
            onTextFetched();
    };
}

void ClipboardAgentX11::onTextFetched() {
    m_isTextFetched = true;
    m_primary.textFetched();
    for (const Task& fetched : std::exchange(m_fetchWaiters, {}))
        fetched();
}

void ClipboardAgentX11::remember(const SelectionContent& content) {
    for (const SelectionValue& value : content)
        m_forms[value.target] = value.form;
}

}  // namespace sayloft
