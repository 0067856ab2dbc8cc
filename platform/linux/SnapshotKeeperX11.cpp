// SPDX-License-Identifier: MIT
#include "platform/linux/SnapshotKeeperX11.h"

#include "platform/linux/SelectionWindowX11.h"

#include <chrono>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr auto LONGEST_WAIT = 1000ms;
constexpr auto KEEP_PREPARED_FOR = 30s;

}  // namespace

SnapshotKeeperX11::SnapshotKeeperX11(SelectionThreadX11& thread, AtomsX11& atoms,
                                     SelectionOwnerX11& own)
    : m_thread(thread),
      m_atoms(atoms),
      m_own(own),
      m_inbox(thread.connection(), atoms),
      m_deadline(thread),
      m_expiry(thread) {}

void SnapshotKeeperX11::prepare() {
    if (!m_waiting.empty())
        return;
    m_isPrepared = true;
    m_expiry.start(KEEP_PREPARED_FOR, [this] { forget(); });
    read();
}

void SnapshotKeeperX11::take(Taken taken) {
    // Changes of the owner up to now arrive before the answer of this round trip.
    static_cast<void>(selectionOwner(m_thread.connection(), m_own.selection()));
    m_thread.handleEvents();
    if (m_waiting.empty())
        m_deadline.start(LONGEST_WAIT, [this] { finish(std::nullopt); });
    m_waiting.push_back(std::move(taken));
    if (m_outcome) {
        deliver();
        return;
    }
    if (m_reader)
        m_reader->hurry();
    else
        read();
}

void SnapshotKeeperX11::ownerChanged() {
    m_reader = nullptr;
    m_outcome.reset();
    if (m_isPrepared || !m_waiting.empty())
        read();
}

void SnapshotKeeperX11::connectionLost() {
    finish(std::nullopt);
}

void SnapshotKeeperX11::handle(const xcb_generic_event_t& event) {
    m_inbox.handle(event);
    if (m_reader)
        m_reader->handle(event);
}

void SnapshotKeeperX11::read() {
    m_outcome.reset();
    m_reader = nullptr;
    if (!m_thread.isConnected()) {
        finish(std::nullopt);
        return;
    }
    // Ours: asking ourselves through the server would only take longer.
    if (m_own.isOurs()) {
        finish(*m_own.content());
        return;
    }
    if (selectionOwner(m_thread.connection(), m_own.selection()) == XCB_WINDOW_NONE) {
        finish(SelectionContent{});
        return;
    }
    m_reader = std::make_unique<SelectionReaderX11>(
        m_thread, m_atoms, m_inbox, m_own.selection(),
        [this](std::optional<SelectionContent> content) { finish(std::move(content)); });
    if (!m_waiting.empty())
        m_reader->hurry();
}

void SnapshotKeeperX11::finish(std::optional<SelectionContent> content) {
    m_reader = nullptr;
    m_outcome = Outcome{std::move(content)};
    if (!m_waiting.empty())
        deliver();
}

void SnapshotKeeperX11::deliver() {
    const std::vector<Taken> waiting = std::exchange(m_waiting, {});
    const Outcome outcome = std::move(*m_outcome);
    m_deadline.stop();
    forget();
    for (const Taken& taken : waiting)
        taken(outcome.content);
}

void SnapshotKeeperX11::forget() {
    m_expiry.stop();
    m_isPrepared = false;
    m_reader = nullptr;
    m_outcome.reset();
}

}  // namespace sayloft
