// SPDX-License-Identifier: MIT
#include "platform/linux/PrimaryLoanX11.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using Clock = SelectionThreadX11::Clock;

constexpr auto SHORTEST_LOAN = 300ms;
constexpr auto LONGEST_LOAN = 2000ms;
// WORKAROUND: VTE 0.70 reads the text twice for one paste.
constexpr auto AFTER_LAST_FETCH = 50ms;

}  // namespace

PrimaryLoanX11::PrimaryLoanX11(SelectionThreadX11& thread, AtomsX11& atoms,
                               SelectionOwnerX11::Requested requested)
    : m_owner(thread, atoms, XCB_ATOM_PRIMARY, std::move(requested)),
      m_keeper(thread, atoms, m_owner),
      m_timer(thread) {}

void PrimaryLoanX11::offer(SelectionOwnerX11::Content text, SelectionThreadX11::Task ready) {
    if (m_isLent && m_owner.isOurs()) {
        lend(std::move(text));
        ready();
        return;
    }
    m_keeper.take([this, text = std::move(text),
                   ready = std::move(ready)](std::optional<SelectionContent> saved) {
        m_saved = std::move(saved);
        lend(text);
        ready();
    });
}

void PrimaryLoanX11::textFetched() {
    if (!m_isLent)
        return;
    const auto now = Clock::now();
    const auto end = std::min(m_lentAt + LONGEST_LOAN,
                              std::max(m_lentAt + SHORTEST_LOAN, now + AFTER_LAST_FETCH));
    m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(end - now), [this] { giveBack(); });
}

void PrimaryLoanX11::giveBack() {
    if (!m_isLent)
        return;
    m_isLent = false;
    m_timer.stop();
    const std::optional<SelectionContent> saved = std::exchange(m_saved, std::nullopt);
    if (!saved)
        return;
    m_owner.replace(saved->empty() ? nullptr : std::make_shared<const SelectionContent>(*saved));
}

void PrimaryLoanX11::handle(const xcb_generic_event_t& event) {
    m_owner.handle(event);
    m_keeper.handle(event);
}

void PrimaryLoanX11::lend(SelectionOwnerX11::Content text) {
    m_owner.take(std::move(text));
    m_isLent = true;
    m_lentAt = Clock::now();
    m_timer.start(LONGEST_LOAN, [this] { giveBack(); });
}

}  // namespace sayloft
