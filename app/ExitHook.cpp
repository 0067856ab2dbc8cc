// SPDX-License-Identifier: MIT
#include "app/ExitHook.h"

#include <cstdlib>
#include <utility>

namespace sayloft {
namespace {

std::function<void()>& hook() {
    // Never destroyed: exit() destroys what is static before or after it calls us.
    static auto* const theHook = new std::function<void()>;
    return *theHook;
}

void runHook(int status, void* /*unused*/) {
    const auto atExit = std::exchange(hook(), nullptr);
    if (!atExit)
        return;
    atExit();
    // Threads still run that use what exit() would destroy now.
    std::_Exit(status);
}

}  // namespace

ExitHook::ExitHook(std::function<void()> atExit) {
    hook() = std::move(atExit);
    static const int registered = ::on_exit(runHook, nullptr);
    static_cast<void>(registered);
}

ExitHook::~ExitHook() {
    hook() = nullptr;
}

}  // namespace sayloft
