// SPDX-License-Identifier: MIT
#pragma once

#include "audio/Recorder.h"
#include "tests/support/FakeAudioInput.h"
#include "tests/support/TempHome.h"
#include "tests/support/Waveform.h"

#include <vector>

#include <gtest/gtest.h>

namespace sayloft::test {

/// Samples that change their sign every time.
inline std::vector<float> tone(std::size_t frames, float amplitude) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = amplitude * (i % 2 == 0 ? 1.0F : -1.0F);
    return samples;
}

/// The recorder with a laptop's microphone at 16 kHz, so that what is delivered is what is in the
/// file.
class TheRecorder : public testing::Test {
protected:
    TheRecorder() {
        m_input.deviceList = {{.id = 1,
                               .transport = fourCharCode("bltn"),
                               .uid = QStringLiteral("laptop"),
                               .format = {.sampleRate = 16000, .channels = 1}}};
    }

    FakeAudioInput::Capture& capture() { return *m_input.captures.back(); }

    TempHome m_home;
    FakeAudioInput m_input;
    Recorder m_recorder{m_input};
};

}  // namespace sayloft::test
