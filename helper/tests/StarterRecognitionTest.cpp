// SPDX-License-Identifier: MIT
#include "helper/tests/HelperBundle.h"
#include "helper/tests/SampleRequests.h"
#include "helper/tests/SpeechSamples.h"
#include "helper/tests/WordErrors.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <random>

namespace sayloft::helper {
namespace {

using test::SpeechSample;
using test::wordErrors;

class StarterRecognition : public testing::Test {
protected:
    static void SetUpTestSuite() { s_server = new test::StarterServer; }
    static void TearDownTestSuite() {
        delete s_server;
        s_server = nullptr;
    }

    [[nodiscard]] std::string hear(const SpeechSample& sample) const {
        return s_server->transcribe(test::wavOf(sample));
    }

    static test::StarterServer* s_server;
    QTemporaryDir m_directory;
};

test::StarterServer* StarterRecognition::s_server = nullptr;

class ClearSentence : public StarterRecognition, public testing::WithParamInterface<const char*> {};

TEST_P(ClearSentence, isHeardWordForWord) {
    EXPECT_EQ(hear(test::speak(m_directory, GetParam())), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Table, ClearSentence,
                         testing::Values("the weather is nice today",
                                         "please send me the report before noon",
                                         "we will meet at the station tomorrow morning",
                                         "i would like a cup of coffee",
                                         "the train leaves in twenty minutes"));

TEST_F(StarterRecognition, makesNoMoreErrorsThanTheRecognisersOwnCommandLineTool) {
    const std::pair<const char*, std::vector<SpeechSample>> sets[] = {
        {"recorded", test::recordedSpeech()},
        {"synthesised", test::synthesisedSpeech(m_directory)}};
    for (const auto& [name, samples] : sets) {
        std::vector<std::string> heard;
        for (const SpeechSample& sample : samples)
            heard.push_back(hear(sample));
        const double ours = test::errorRate(samples, heard);
        const double theirs = test::errorRate(samples, test::runCommandLineTool(samples).heard);
        std::printf("word error rate, %s speech: starter %.1f %%, pocketsphinx_batch %.1f %%\n",
                    name, ours, theirs);
        EXPECT_LE(ours, theirs) << name;
        EXPECT_LT(ours, 40) << name;
    }
}

std::string noiseAtFullScale() {
    std::mt19937 random(7);  // NOLINT(bugprone-*): the same run every time
    std::string wav = test::wavFile(32000);
    for (std::size_t i = 44; i < wav.size(); ++i)
        wav[i] = static_cast<char>(random());
    return wav;
}

TEST_F(StarterRecognition, hearsTheSameWhateverCameBefore) {
    const std::string others[] = {noiseAtFullScale(), test::wavFile(16000)};
    for (const SpeechSample& sample : test::recordedSpeech()) {
        const std::string heard = hear(sample);
        EXPECT_FALSE(heard.empty());
        for (const std::string& other : others) {
            static_cast<void>(s_server->transcribe(other));
            EXPECT_EQ(hear(sample), heard);
        }
    }
}

TEST_F(StarterRecognition, hearsNothingInSilenceOfAnyLength) {
    for (const std::size_t samples : {0U, 1U, 159U, 400U, 410U, 1600U, 16000U, 160000U})
        EXPECT_EQ(s_server->transcribe(test::wavFile(samples)), "") << samples;
}

TEST_F(StarterRecognition, survivesNoiseAtFullScale) {
    std::string wav = noiseAtFullScale();
    static_cast<void>(s_server->transcribe(wav));
    for (std::size_t i = 44; i < wav.size(); i += 2)
        wav.replace(i, 2, i / 64 % 2 == 0 ? std::string("\xff\x7f") : std::string("\x00\x80", 2));
    static_cast<void>(s_server->transcribe(wav));
    EXPECT_EQ(hear(test::speak(m_directory, "the weather is nice today")),
              "the weather is nice today");
}

TEST(WordErrors, countsWordsPutInTakenOutAndReplaced) {
    EXPECT_EQ(wordErrors("a b c", "a b c"), 0);
    EXPECT_EQ(wordErrors("a b c", "a x c"), 1);
    EXPECT_EQ(wordErrors("a b c", "b c"), 1);
    EXPECT_EQ(wordErrors("a b c", "a b b c"), 1);
    EXPECT_EQ(wordErrors("a b c", ""), 3);
    EXPECT_EQ(wordErrors("", "a b"), 2);
    EXPECT_EQ(wordErrors("a b c d", "b x d e"), 3);
}

}  // namespace
}  // namespace sayloft::helper
