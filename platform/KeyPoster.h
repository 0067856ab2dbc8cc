// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

namespace sayloft {

/// Virtual key codes that `KeyPoster` understands.
namespace VirtualKey {
inline constexpr std::uint16_t v = 9;
inline constexpr std::uint16_t returnKey = 36;
}  // namespace VirtualKey

/// Types keys into whatever has the keyboard focus. Main thread only.
class KeyPoster {
public:
    using Posted = std::function<void()>;

    virtual ~KeyPoster() = default;

    /// Some platforms can type only once the user has let go of the modifier keys: calls `ready`
    /// when the next `postKey` need not wait for that, so that what belongs right before it can be
    /// done.
    virtual void whenReady(const Posted& ready) { ready(); }

    /// Posts one key-down and one key-up that carry exactly `flags` (see KeyFlag), whatever the
    /// user holds at that moment. V with the command flag is the platform's own way to paste, which
    /// may be another key. `posted` is called once on the main thread when the events are out, also
    /// when they could not be made; it may be called before this function returns.
    virtual void postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) = 0;

    /// Some platforms can type only after letting go of the modifier keys that the user holds.
    /// While `mayRelease` says false (a dictation is being held), they wait instead. Others need no
    /// such thing. Without a predicate held keys may be released.
    virtual void setMayReleaseHeldKeys(const std::function<bool()>& mayRelease) {
        static_cast<void>(mayRelease);
    }
};

}  // namespace sayloft
