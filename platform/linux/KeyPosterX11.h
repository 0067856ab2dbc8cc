// SPDX-License-Identifier: MIT
#pragma once

#include "platform/KeyPoster.h"
#include "platform/linux/KeyInjectorX11.h"
#include "platform/linux/KeyMapX11.h"
#include "platform/linux/XcbHandles.h"

#include <QElapsedTimer>
#include <QObject>

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

namespace sayloft {

class ModifierWatch;

/// Types with XTEST. Pasting is Control+V, or Shift+Insert in terminals and where the keyboard map
/// has no Latin V. Calls are carried out one after another.
///
/// Modifiers that the user holds are waited for, up to 1.5 s and longer while they may not be
/// released, and are then released in the user's place.
class KeyPosterX11 : public QObject, public KeyPoster {
public:
    using Ready = std::function<void()>;

    /// How the text to paste gets to where the paste key fetches it; each calls `ready` once.
    struct PasteOffer {
        std::function<void(Ready ready)> onClipboard;
        /// On PRIMARY too, which terminals paste.
        std::function<void(Ready ready)> onPrimary;
    };

    /// `watch` must outlive it. A callback of `offer` that comes after its end does nothing.
    KeyPosterX11(ModifierWatch& watch, PasteOffer offer);

    void whenReady(const Posted& ready) override;
    void postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) override;
    void setMayReleaseHeldKeys(const std::function<bool()>& mayRelease) override;

private:
    enum class Offer { none, clipboard, primary };
    struct Request {
        std::uint16_t virtualKey;
        std::uint64_t flags;
        Posted posted;
    };
    struct Plan {
        KeyChordX11 chord;
        Offer offer = Offer::none;
    };

    void startNext();
    void proceed();
    void proceedLater();
    void finish();
    void getOffered(Offer offer);
    /// Whether there is a server to type with. Reads the keyboard map as it is now.
    [[nodiscard]] bool connect();
    [[nodiscard]] bool mustWaitForHeldKeys() const;
    [[nodiscard]] bool mayReleaseHeldKeys() const;
    [[nodiscard]] std::optional<Plan> plan(const Request& request) const;
    [[nodiscard]] Plan pastePlan() const;
    [[nodiscard]] KeyInjectorX11::Typed inject(const KeyChordX11& chord);

    ModifierWatch& m_watch;
    PasteOffer m_offer;
    std::function<bool()> m_mayRelease;
    std::deque<Request> m_requests;  ///< the first one is being carried out
    QElapsedTimer m_sinceStart;      ///< of the first request, or of the wait before it
    bool m_hasWaited = false;        ///< for the first request, before it came
    Offer m_offered = Offer::none;
    XcbConnection m_connection;
    std::optional<KeyMapX11> m_map;
};

}  // namespace sayloft
