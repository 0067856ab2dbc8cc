// SPDX-License-Identifier: MIT
// The answer to a transcription request: anything may be listening on the helper's port.
#include "fuzz/support/AnsweredConnections.h"
#include "fuzz/support/FuzzInput.h"
#include "speech/Transcriber.h"

#include <optional>

using namespace sayloft;

namespace {

std::optional<QString> transcriptFrom(std::string_view answer) {
    static const Transcriber transcriber(
        Transcriber::endpoint(), {.attempts = 1, .pause = {}, .timeout = std::chrono::seconds(5)});
    fuzz::answerConnections(answer);
    return transcriber.transcribe(QStringLiteral("/dev/null"));
}

// Where nothing came through, every input would be fine.
bool requireThatAnswersArrive() {
    fuzz::require(transcriptFrom("HTTP/1.1 200 OK\r\n\r\nwords") == QStringLiteral("words"));
    return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    [[maybe_unused]] static const bool answersArrive = requireThatAnswersArrive();
    const auto text = transcriptFrom(fuzz::FuzzInput(data, size).rest());
    fuzz::require(!text || *text == text->trimmed());
    return 0;
}
