// SPDX-License-Identifier: MIT
// A long run of the speech helper with the starter model.
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SpeechSamples.h"
#include "tests/support/UsageTrend.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace sayloft::helper::test {
namespace {

using sayloft::test::UsageTrend;

// One after another, as the helper need not recognise the same twice in a row.
TEST(HelperEndurance, ofSixHundredRecordingsKeepsNoneOfThem) {
    constexpr int rounds = 150;
    // Each of its threads has memory of its own, which takes long to find its size.
    constexpr int warmUp = 75;
    const QTemporaryDir directory;
    std::vector<std::string> recordings;
    for (const char* words : {"good morning", "thank you", "see you later", "hello"})
        recordings.push_back(wavOf(speak(directory, words)));
    const StarterServer server;
    UsageTrend trend(server.program().pid(), static_cast<int>(recordings.size()));
    for (int round = 1; round <= rounds; ++round) {
        for (const std::string& recording : recordings)
            ASSERT_NE(server.transcribe(recording), "");
        if (round >= warmUp)
            trend.look();
    }
    std::printf("recordings to the helper, %s\n", trend.describe().c_str());
    // The shortest of them has six times as much.
    EXPECT_LT(trend.memoryKb(), 4);
    EXPECT_LT(trend.files(), 0.005);
    EXPECT_LT(trend.threads(), 0.005);
}

}  // namespace
}  // namespace sayloft::helper::test
