// SPDX-License-Identifier: MIT
#include "platform/linux/KeyPosterX11.h"

#include "platform/ModifierWatch.h"
#include "platform/Mods.h"
#include "platform/linux/FocusX11.h"
#include "platform/linux/HeldModifiersX11.h"
#include "platform/linux/XkbState.h"

#include <QPointer>
#include <QTimer>

#include <xkbcommon/xkbcommon-keysyms.h>

#include <chrono>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr auto longestWaitForHeldKeys = 1500ms;
constexpr auto heldKeysInterval = 10ms;

const KeyChordX11 controlV{
    .key = XKB_KEY_v,
    .modifier = KeyChordX11::Modifier{.index = KeyMapX11::control, .keysym = XKB_KEY_Control_L}};
const KeyChordX11 shiftInsert{
    .key = XKB_KEY_Insert,
    .modifier = KeyChordX11::Modifier{.index = KeyMapX11::shift, .keysym = XKB_KEY_Shift_L}};
const KeyChordX11 plainReturn{.key = XKB_KEY_Return, .modifier = std::nullopt};

class Injection {
public:
    explicit Injection(ModifierWatch& watch) : m_watch(watch) { m_watch.beginInjection(); }
    ~Injection() { m_watch.endInjection(); }
    Injection(const Injection&) = delete;
    Injection& operator=(const Injection&) = delete;

private:
    ModifierWatch& m_watch;
};

XcbConnection connectForTyping() {
    XcbConnection connection = connectToXServer();
    const bool canType =
        connection && useXkb(connection.get()) && KeyInjectorX11(connection.get()).isAvailable();
    return canType ? std::move(connection) : nullptr;
}

}  // namespace

KeyPosterX11::KeyPosterX11(ModifierWatch& watch, PasteOffer offer)
    : m_watch(watch), m_offer(std::move(offer)) {}

void KeyPosterX11::setMayReleaseHeldKeys(const std::function<bool()>& mayRelease) {
    m_mayRelease = mayRelease;
}

void KeyPosterX11::postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) {
    m_requests.push_back({virtualKey, flags, std::move(posted)});
    if (m_requests.size() == 1)
        startNext();
}

void KeyPosterX11::whenReady(const Posted& ready) {
    if (!std::exchange(m_hasWaited, true))
        m_sinceStart.start();
    if (connect() && mustWaitForHeldKeys()) {
        QTimer::singleShot(heldKeysInterval, this, [this, ready] { whenReady(ready); });
        return;
    }
    ready();
}

void KeyPosterX11::startNext() {
    m_offered = Offer::none;
    if (!std::exchange(m_hasWaited, false))
        m_sinceStart.start();
    proceed();
}

// Comes back here after every wait: what was true before it may have changed meanwhile.
void KeyPosterX11::proceed() {
    if (!connect())
        return finish();
    if (mustWaitForHeldKeys())
        return proceedLater();
    const std::optional<Plan> next = plan(m_requests.front());
    if (!next)
        return finish();
    if (next->offer != m_offered)
        return getOffered(next->offer);
    if (inject(next->chord) == KeyInjectorX11::Typed::heldKeys)
        return proceedLater();
    finish();
}

void KeyPosterX11::proceedLater() {
    // PRIMARY is lent for a moment only.
    m_offered = Offer::none;
    QTimer::singleShot(heldKeysInterval, this, [this] { proceed(); });
}

void KeyPosterX11::finish() {
    const Posted posted = std::move(m_requests.front().posted);
    const QPointer<KeyPosterX11> self(this);
    if (posted)
        posted();
    if (!self)
        return;
    m_requests.pop_front();
    if (!m_requests.empty())
        startNext();
}

void KeyPosterX11::getOffered(Offer offer) {
    m_offered = offer;
    const auto ready = [self = QPointer<KeyPosterX11>(this)] {
        if (self)
            self->proceed();
    };
    offer == Offer::primary ? m_offer.onPrimary(ready) : m_offer.onClipboard(ready);
}

bool KeyPosterX11::connect() {
    // Takes away what the server tells every client, and notices when the server has gone.
    while (m_connection && XcbOwned<xcb_generic_event_t>(xcb_poll_for_event(m_connection.get())))
        continue;
    if (!m_connection || xcb_connection_has_error(m_connection.get()) != 0)
        m_connection = connectForTyping();
    if (!m_connection)
        return false;
    m_map = KeyMapX11::read(m_connection.get());
    return m_map.has_value();
}

bool KeyPosterX11::mustWaitForHeldKeys() const {
    return !HeldModifiersX11::read(m_connection.get(), *m_map).empty() && !mayReleaseHeldKeys();
}

bool KeyPosterX11::mayReleaseHeldKeys() const {
    const bool mayRelease = !m_mayRelease || m_mayRelease();
    return mayRelease && m_sinceStart.hasExpired(longestWaitForHeldKeys.count());
}

std::optional<KeyPosterX11::Plan> KeyPosterX11::plan(const Request& request) const {
    if (request.virtualKey == VirtualKey::v && request.flags == KeyFlag::command)
        return pastePlan();
    if (request.virtualKey == VirtualKey::returnKey && request.flags == 0)
        return Plan{.chord = plainReturn};
    return std::nullopt;
}

KeyPosterX11::Plan KeyPosterX11::pastePlan() const {
    const FocusX11 focus(m_connection.get());
    if (pastesWithShiftInsert(focus.focused().windowClass))
        return {.chord = shiftInsert, .offer = Offer::primary};
    const bool hasLatinV = m_map->keyFor(XKB_KEY_v, 0).has_value();
    return {.chord = hasLatinV ? controlV : shiftInsert, .offer = Offer::clipboard};
}

KeyInjectorX11::Typed KeyPosterX11::inject(const KeyChordX11& chord) {
    using HeldKeys = KeyInjectorX11::HeldKeys;
    const Injection injection(m_watch);
    // The watch has just reported what it had not yet: perhaps a new dictation. Another one may
    // begin before the injector looks, which is why it is told what to do then.
    const HeldKeys heldKeys = mayReleaseHeldKeys() ? HeldKeys::release : HeldKeys::refuse;
    const std::optional<XkbState> state = readXkbState(m_connection.get());
    return KeyInjectorX11(m_connection.get())
        .type(chord, *m_map, state ? state->group : 0, heldKeys);
}

}  // namespace sayloft
