// SPDX-License-Identifier: MIT
#include "tests/support/CloseListening.h"

#include <QString>

#include <optional>
#include <utility>

namespace sayloft::test {

std::unique_ptr<AudioCapture> listenClosely(AudioInput& input,
                                            std::function<void(const AudioBuffer&)> onBuffer) {
    return input
        .startCapture({.device = std::nullopt,
                       .framesPerBuffer = 16,
                       .onBuffer = std::move(onBuffer),
                       .onEnd = [](const QString& /*error*/) {}})
        .capture;
}

}  // namespace sayloft::test
