// SPDX-License-Identifier: MIT
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SampleRequests.h"
#include "helper/tests/SpeechSamples.h"
#include "tests/support/ProcessFigures.h"
#include "tests/support/RawHttp.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>
#include <vector>

namespace sayloft::helper {
namespace {

using test::SpeechSample;

class StarterClients : public testing::Test {
protected:
    QTemporaryDir m_directory;
};

double processorTime(const test::StarterServer& server) {
    return sayloft::test::processorMillisecondsOf(server.program().pid());
}

TEST_F(StarterClients, areAnsweredFiftyAtOnceEachWithItsOwnWords) {
    const SpeechSample one = test::speak(m_directory, "hello");
    const SpeechSample other = test::speak(m_directory, "tomorrow");
    const test::StarterServer server;
    const std::string wavs[] = {test::wavOf(one), test::wavOf(other)};
    const std::string alone[] = {server.transcribe(wavs[0]), server.transcribe(wavs[1])};
    ASSERT_NE(alone[0], alone[1]);
    std::atomic<int> right = 0;
    std::vector<std::jthread> clients;
    for (std::size_t i = 0; i < 50; ++i) {
        clients.emplace_back(
            [&, i] { right += server.transcribe(wavs[i % 2]) == alone[i % 2] ? 1 : 0; });
    }
    clients.clear();
    EXPECT_EQ(right, 50);
}

TEST_F(StarterClients, thatLeaveAndComeBackAreDecodedOnce) {
    const SpeechSample speech = test::speak(
        m_directory,
        "the weather is nice today and i would like a cup of coffee before the train leaves the "
        "station in twenty minutes and we will meet again tomorrow morning after the report");
    const std::string wav = test::wavOf(speech);
    const test::StarterServer calm;
    const double before = processorTime(calm);
    const std::string expected = calm.transcribe(wav);
    const double once = processorTime(calm) - before;
    ASSERT_FALSE(expected.empty());

    const test::StarterServer server;
    const double start = processorTime(server);
    {
        sayloft::test::RawConnection impatient(server.port());
        impatient.send(test::postOf(test::appForm(wav)));
        ASSERT_FALSE(impatient.waitForBytes("HTTP/1.1 ", std::chrono::milliseconds(300)));
    }
    EXPECT_EQ(server.transcribe(wav), expected);
    EXPECT_LT(processorTime(server) - start, 1.6 * once);
}

}  // namespace
}  // namespace sayloft::helper
