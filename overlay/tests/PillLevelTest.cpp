// SPDX-License-Identifier: MIT
// What the pill shows is what the microphone hears, on a real sound server.
#include "audio/tests/RecorderOnServer.h"
#include "overlay/PillView.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

/// A tone of 1 kHz; 0 dBFS is the loudest sine there is.
Samples tone(double dbfs, std::size_t count) {
    const double peak = 32767 * std::pow(10, dbfs / 20);
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<std::int16_t>(std::lround(
            peak * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / 16000)));
    return samples;
}

struct Row {
    const char* name;
    double dbfs;
    double level;  ///< from 0 at −50 dBFS to 1 at 0, of the sine's power, 3.01 dB below its peak
};

class PillLevel : public RecorderOnServer, public testing::WithParamInterface<Row> {
protected:
    PillLevel() {
        view.setLevelProvider([this] { return recorder.level(); });
    }

    PillView view;
};

TEST_P(PillLevel, isTheLoudnessOfTheTone) {
    const QString file = soundFile(tone(GetParam().dbfs, std::size_t{3} * 16000));
    recorder.start();
    view.setRecording();
    const ChildProgram playing = server.startPlaying(file);
    // The tone lasts longer than the level takes to settle, which is 20 ticks.
    ASSERT_TRUE(waitUntil([this] { return recorder.level() > 0.1; }));
    turnEventLoopFor(500ms);
    for (int i = 0; i < 40; ++i) {
        view.tick();
        turnEventLoopFor(16ms);
    }
    EXPECT_NEAR(view.pill().level, GetParam().level, 0.02);
    static_cast<void>(recorder.stop());
}

INSTANTIATE_TEST_SUITE_P(Tones, PillLevel,
                         testing::Values(Row{"minus30dBFS", -30, 0.3398},
                                         Row{"minus20dBFS", -20, 0.5398},
                                         Row{"minus10dBFS", -10, 0.7398},
                                         Row{"fullScale", 0, 0.9398}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft::test
