// SPDX-License-Identifier: MIT
// Other X11 programs, of which each may put anything into a property and send any event, while the
// clipboard is saved, lent and given back. An input is a list of steps.
#include "fuzz/support/FakeXServer.h"
#include "fuzz/support/FuzzInput.h"
#include "platform/linux/ClipboardAgentX11.h"

#include <array>
#include <cstring>

using namespace sayloft;
using fuzz::fakeXServer;
using fuzz::FuzzInput;

namespace {

constexpr std::array<const char*, 15> atoms{
    "TARGETS",   "MULTIPLE",    "TIMESTAMP", "INCR",         "ATOM",
    "ATOM_PAIR", "UTF8_STRING", "STRING",    "TEXT",         "image/png",
    "image/bmp", "text/html",   "CLIPBOARD", "SAVE_TARGETS", "x-kde-passwordManagerHint"};

/// A name that both sides know, or any number.
xcb_atom_t atom(FuzzInput& input) {
    const std::size_t index = input.byte();
    return index < atoms.size() ? fuzz::fakeAtom(atoms[index]) : static_cast<xcb_atom_t>(index);
}

/// One of ours for small numbers.
xcb_window_t window(FuzzInput& input) {
    return fuzz::FakeXServer::firstWindow + input.byte();
}

xcb_atom_t selection(FuzzInput& input) {
    return input.byte() % 2 == 0 ? fuzz::fakeAtom("CLIPBOARD") : xcb_atom_t{XCB_ATOM_PRIMARY};
}

class Session {
public:
    Session() : m_thread(connect()), m_agent(m_thread) {}

    void step(FuzzInput& input) {
        switch (input.byte() % 14) {
            case 0:
                return setProperty(input);
            case 1:
                return setTargets(input);
            case 2:
                return answer(fakeXServer().askedProperty);
            case 3:
                return answer(XCB_ATOM_NONE);
            case 4:
                return change(fakeXServer().askedWindow, fakeXServer().askedProperty,
                              XCB_PROPERTY_NEW_VALUE);
            case 5:
                return request(input);
            case 6:
                return take(input);
            case 7:
                return anyEvent(input);
            case 8:
                return changeOwner(input);
            case 9:
                return m_agent.prepareSnapshot();
            case 10:
                return m_agent.takeSnapshot([this](auto taken) { m_snapshot = std::move(taken); });
            case 11:
                return m_agent.setText(
                    QString::fromUtf8(fuzz::byteArray(input.bytes(input.byte()))),
                    ClipboardStay::forOnePaste);
            case 12:
                return m_agent.restore(m_snapshot.value_or(ClipboardSnapshot()));
            default:
                return rare(input);
        }
    }

private:
    static XcbConnection connect() {
        fakeXServer() = {};
        return connectToXServer();
    }

    void setProperty(FuzzInput& input) {
        constexpr std::array<std::uint8_t, 3> formats{8, 16, 32};
        fakeXServer().property.type = atom(input);
        fakeXServer().property.format = formats.at(input.byte() % formats.size());
        fakeXServer().property.data = input.bytes(std::size_t{input.byte()} * 2);
    }

    void setTargets(FuzzInput& input) {
        fakeXServer().property = {.type = XCB_ATOM_ATOM, .format = 32, .data = {}};
        for (int left = input.byte() % 32; left > 0; --left) {
            const xcb_atom_t target = atom(input);
            fakeXServer().property.data.append(reinterpret_cast<const char*>(&target),
                                               sizeof target);
        }
    }

    template <typename Event>
    void send(const Event& event) {
        xcb_generic_event_t sent{};
        std::memcpy(&sent, &event, sizeof event);
        m_agent.handle(sent);
    }

    void answer(xcb_atom_t property) {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = fakeXServer().time;
        event.requestor = fakeXServer().askedWindow;
        event.target = fakeXServer().askedTarget;
        event.property = property;
        send(event);
    }

    void change(xcb_window_t window, xcb_atom_t atom, std::uint8_t state) {
        xcb_property_notify_event_t event{};
        event.response_type = XCB_PROPERTY_NOTIFY;
        event.window = window;
        event.atom = atom;
        event.state = state;
        send(event);
    }

    void request(FuzzInput& input) {
        xcb_selection_request_event_t event{};
        event.response_type = XCB_SELECTION_REQUEST;
        event.owner = window(input);
        event.requestor = window(input);
        event.selection = selection(input);
        event.target = atom(input);
        event.property = atom(input);
        send(event);
    }

    /// A requestor takes the piece that it has got.
    void take(FuzzInput& input) {
        const xcb_window_t requestor = window(input);
        change(requestor, atom(input), XCB_PROPERTY_DELETE);
    }

    void anyEvent(FuzzInput& input) {
        const std::string_view bytes = input.bytes(sizeof(xcb_generic_event_t) - 4);
        xcb_generic_event_t event{};
        std::memcpy(&event, bytes.data(), bytes.size());
        m_agent.handle(event);
    }

    void changeOwner(FuzzInput& input) {
        fakeXServer().selectionOwner = window(input);
        xcb_generic_event_t event{};
        event.response_type = 87;  // XFixesSelectionNotify
        const xcb_atom_t changed = selection(input);
        std::memcpy(reinterpret_cast<char*>(&event) + 12, &changed, sizeof changed);
        m_agent.handle(event);
    }

    void rare(FuzzInput& input) {
        switch (input.byte() % 6) {
            case 0:
                return m_agent.offerOnPrimary([] {});
            case 1:
                return m_agent.handOver([] {});
            case 2:
                return m_agent.whenTextFetched([] {});
            case 3:
                fakeXServer().focus = window(input);
                return;
            case 4:
                fakeXServer().parent = window(input);
                return;
            default:
                fakeXServer().isGone = true;
                return m_agent.connectionLost();
        }
    }

    SelectionThreadX11 m_thread;  ///< never started: everything happens here
    ClipboardAgentX11 m_agent;
    std::optional<ClipboardSnapshot> m_snapshot;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    Session session;
    while (!input.isEmpty())
        session.step(input);
    return 0;
}
