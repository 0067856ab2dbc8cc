// SPDX-License-Identifier: MIT
#include "tests/support/WaitUntil.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <thread>

namespace sayloft::test {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
    const auto end = Clock::now() + deadline;
    while (!condition()) {
        if (Clock::now() >= end)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

void turnEventLoopFor(std::chrono::milliseconds duration) {
    static_cast<void>(waitUntil([] { return false; }, duration));
}

}  // namespace sayloft::test
