// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>

namespace sayloft {

/// Reports which modifier keys are held, whoever has the keyboard focus. It only listens: no key is
/// swallowed or changed, and keys other than modifiers are never seen. Main thread only.
class ModifierWatch {
public:
    /// Called on the main thread with the complete flags word (see KeyFlag) after every change.
    using FlagsChanged = std::function<void(std::uint64_t flags)>;

    virtual ~ModifierWatch() = default;

    /// Begins to report. False when this system or the user does not allow it; may be tried again.
    [[nodiscard]] virtual bool start(FlagsChanged flagsChanged) = 0;

    /// Keys that Sayloft itself injects between these two calls are not reported. On `endInjection`
    /// the held state is read anew and reported when it differs from the last report.
    virtual void beginInjection() = 0;
    virtual void endInjection() = 0;
};

}  // namespace sayloft
