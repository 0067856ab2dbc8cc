// SPDX-License-Identifier: MIT
// The answer to a transcription request: anything may be listening on the helper's port.
#include "fuzz/support/AnsweredConnections.h"
#include "fuzz/support/FuzzInput.h"
#include "speech/Transcriber.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Transcriber transcriber(
        Transcriber::endpoint(), {.attempts = 1, .pause = {}, .timeout = std::chrono::seconds(5)});
    fuzz::answerConnections(fuzz::FuzzInput(data, size).rest());
    const auto text = transcriber.transcribe(QStringLiteral("/dev/null"));
    fuzz::require(!text || *text == text->trimmed());
    return 0;
}
