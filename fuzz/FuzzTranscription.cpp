// SPDX-License-Identifier: MIT
// The answer to a transcription request: anything may be listening on the helper's port.
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/Socket.h"
#include "speech/Transcriber.h"
#include "tests/support/Loopback.h"

#include <sys/socket.h>

#include <mutex>
#include <thread>

using namespace sayloft;

namespace {

/// Answers every request with what it was last told. Lives until the process ends.
class Answerer {
public:
    Answerer() : m_listener(test::listenOnLoopback(0)), m_port(test::portOf(m_listener)) {
        std::thread([this] { serve(); }).detach();
    }

    [[nodiscard]] QUrl url() const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1/transcriptions").arg(m_port));
    }

    void setAnswer(std::string_view answer) {
        const std::lock_guard lock(m_mutex);
        m_answer = answer;
    }

private:
    [[noreturn]] void serve() {
        while (true) {
            const int accepted = ::accept(m_listener, nullptr, nullptr);
            if (accepted < 0)
                continue;
            const fuzz::Socket client(accepted);
            client.sendAll(answer());
            static_cast<void>(client.receiveAll());
        }
    }

    std::string answer() {
        const std::lock_guard lock(m_mutex);
        return m_answer;
    }

    int m_listener;
    std::uint16_t m_port;
    std::mutex m_mutex;
    std::string m_answer;  ///< guarded by m_mutex
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static auto* const answerer = new Answerer;
    static const Transcriber transcriber(
        answerer->url(), {.attempts = 1, .pause = {}, .timeout = std::chrono::seconds(5)});
    answerer->setAnswer(fuzz::FuzzInput(data, size).rest());
    const auto text = transcriber.transcribe(QStringLiteral("/dev/null"));
    fuzz::require(!text || *text == text->trimmed());
    return 0;
}
