// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"

#include <functional>
#include <memory>

namespace sayloft::test {

/// Captures from the default microphone in buffers of 16 frames, a millisecond at 16 kHz. None when
/// that is not possible. `onBuffer` is called on the thread of the input.
[[nodiscard]] std::unique_ptr<AudioCapture> listenClosely(
    AudioInput& input, std::function<void(const AudioBuffer&)> onBuffer);

}  // namespace sayloft::test
