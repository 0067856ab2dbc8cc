// SPDX-License-Identifier: MIT
#include "app/QuitSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace sayloft {
namespace {

constexpr std::array quitSignals{SIGTERM, SIGINT, SIGHUP};

// A signal handler may do little more than write to a pipe.
std::array<int, 2> wakeUpPipe{-1, -1};

void wakeUp(int /*signal*/) {
    const int errnoBefore = errno;
    [[maybe_unused]] const auto written = ::write(wakeUpPipe[1], "q", 1);
    errno = errnoBefore;
}

int openPipe() {
    if (::pipe2(wakeUpPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        wakeUpPipe = {-1, -1};
    return wakeUpPipe[0];
}

}  // namespace

QuitSignals::QuitSignals(std::function<void()> quit)
    : m_notifier(openPipe(), QSocketNotifier::Read) {
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier,
                     [quit = std::move(quit)] {
                         std::array<char, 16> bytes{};
                         while (::read(wakeUpPipe[0], bytes.data(), bytes.size()) > 0) {
                         }
                         quit();
                     });
    struct sigaction action {};
    action.sa_handler = wakeUp;
    action.sa_flags = SA_RESTART;
    for (const int signal : quitSignals) {
        struct sigaction inherited {};
        ::sigaction(signal, nullptr, &inherited);
        // As nohup wants it.
        if (signal != SIGHUP || inherited.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

QuitSignals::~QuitSignals() {
    for (const int signal : quitSignals)
        std::signal(signal, SIG_DFL);
    m_notifier.setEnabled(false);
    for (int& end : wakeUpPipe)
        ::close(std::exchange(end, -1));
}

}  // namespace sayloft
