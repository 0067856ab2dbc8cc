// SPDX-License-Identifier: MIT
// From letting the chord go to the text in a program that somebody else wrote: a terminal, whose
// inside tells at once what has arrived. The speech server answers at once. In turns with it, the
// same steps by hand with curl, xclip and xdotool.
#include "bench/BenchMain.h"
#include "bench/ReleaseRig.h"
#include "bench/Result.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/TestKeyboard.h"

#include <QFile>

#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft::bench {
namespace {

using Clock = std::chrono::steady_clock;
using test::TestKeyboard;

/// xterm with a program inside that passes on every byte as it comes.
class Terminal {
public:
    explicit Terminal(const Desktop& desktop) : m_pipePath(desktop.path(QStringLiteral("pipe"))) {
        if (::mkfifo(QFile::encodeName(m_pipePath).constData(), 0600) != 0)
            throw std::runtime_error("no pipe");
        m_pipe = ::open(QFile::encodeName(m_pipePath).constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
        const QString inside =
            QStringLiteral("stty raw -echo; printf ready >%1; exec cat >%1").arg(m_pipePath);
        m_program = std::make_unique<test::ChildProgram>(
            QStringLiteral("xterm"),
            QStringList{QStringLiteral("-e"), QStringLiteral("sh"), QStringLiteral("-c"), inside},
            desktop.environment());
        static_cast<void>(firstByte());
        takeAll();
    }
    ~Terminal() { ::close(m_pipe); }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    /// When text arrives; what follows it is thrown away later.
    [[nodiscard]] Clock::time_point firstByte() const {
        pollfd wanted{.fd = m_pipe, .events = POLLIN, .revents = 0};
        if (::poll(&wanted, 1, 10000) != 1)
            throw std::runtime_error("no text came to the terminal");
        return Clock::now();
    }

    void takeAll() const {
        std::array<char, 4096> text{};
        while (::read(m_pipe, text.data(), text.size()) > 0)
            continue;
    }

private:
    QString m_pipePath;
    int m_pipe = -1;
    std::unique_ptr<test::ChildProgram> m_program;
};

class Comparison {
public:
    void run() {
        // The first of each loads libraries and caches.
        static_cast<void>(dictate());
        static_cast<void>(doByHand());
        for (int round = 0; round < ReleaseRig::rounds; ++round) {
            ours.push_back(dictate());
            theirs.push_back(doByHand());
        }
    }

    std::vector<double> ours;
    std::vector<double> theirs;

private:
    [[nodiscard]] double dictate() {
        m_keyboard.press(TestKeyboard::shiftLeft);
        m_keyboard.press(TestKeyboard::superLeft);
        std::this_thread::sleep_for(ReleaseRig::hold);
        const auto released = Clock::now();
        m_keyboard.release(TestKeyboard::superLeft);
        m_keyboard.release(TestKeyboard::shiftLeft);
        return untilText(released);
    }

    [[nodiscard]] double doByHand() const {
        double taken = 0;
        m_rig.doByHand(
            {.selection = QStringLiteral("primary"), .pasteKey = QStringLiteral("shift+Insert")},
            [&](Clock::time_point started) { taken = untilText(started); });
        return taken;
    }

    [[nodiscard]] double untilText(Clock::time_point start) const {
        const Clock::duration taken = m_terminal.firstByte() - start;
        std::this_thread::sleep_for(ReleaseRig::rest);
        m_terminal.takeAll();
        return std::chrono::duration<double, std::milli>(taken).count();
    }

    ReleaseRig m_rig;
    Terminal m_terminal{m_rig.desktop()};
    TestKeyboard m_keyboard;
};

void runBench() {
    Comparison comparison;
    comparison.run();
    printMilliseconds("chord release to text in xterm (100 ms: recording)", comparison.ours,
                      "curl + xclip + xdotool", comparison.theirs);
}

}  // namespace
}  // namespace sayloft::bench

int main(int argc, char** argv) {
    return sayloft::bench::benchMain(argc, argv, &sayloft::bench::runBench);
}
