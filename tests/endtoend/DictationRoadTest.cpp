// SPDX-License-Identifier: MIT
// From somebody's voice to the text in an editor, and how many words get lost on that road.
#include "helper/tests/SpeechSamples.h"
#include "tests/endtoend/DictationDesk.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace sayloft {
namespace {

using namespace std::chrono_literals;
using helper::test::SpeechSample;
using test::DictationDesk;

class DictationRoad : public testing::Test {
protected:
    /// Dictates every sample on a line of its own.
    void dictate(const std::vector<SpeechSample>& samples) {
        for (const SpeechSample& sample : samples) {
            const qsizetype before = m_desk.transcripts().size();
            m_desk.say(sample.file, DictationDesk::dictateEnter);
            ASSERT_TRUE(m_desk.waitForTranscripts(before + 1, 60s)) << sample.words;
        }
    }

    /// The lines that the editor holds, after showing that they are all that was recognised.
    std::vector<std::string> linesOfEditor() {
        const QString all = m_desk.transcripts().join(QLatin1Char('\n')) + QLatin1Char('\n');
        const QString text = m_desk.editor().textOnce(all);
        EXPECT_EQ(text, all);
        std::vector<std::string> lines;
        for (const QString& line : text.split(QLatin1Char('\n')))
            lines.push_back(line.toStdString());
        lines.pop_back();
        return lines;
    }

    DictationDesk m_desk;
    QTemporaryDir m_directory;
};

void expectNoMoreErrorsThanTheTool(const char* name, const std::vector<SpeechSample>& samples,
                                   const std::vector<std::string>& heard) {
    ASSERT_EQ(heard.size(), samples.size());
    const double ours = errorRate(samples, heard);
    const double theirs = errorRate(samples, runCommandLineTool(samples).heard);
    std::printf("word error rate, %s speech: the whole road %.1f %%, pocketsphinx_batch %.1f %%\n",
                name, ours, theirs);
    EXPECT_LE(ours, theirs);
    EXPECT_LT(ours, 40);
}

TEST_F(DictationRoad, losesNoMoreWordsOfPeopleThanTheRecognisersOwnCommandLineTool) {
    const std::vector<SpeechSample> samples = helper::test::recordedSpeech();
    m_desk.startSayloft();
    ASSERT_NO_FATAL_FAILURE(dictate(samples));
    expectNoMoreErrorsThanTheTool("recorded", samples, linesOfEditor());
}

TEST_F(DictationRoad, losesNoMoreWordsOfTheSynthesiserThanTheRecognisersOwnCommandLineTool) {
    const std::vector<SpeechSample> samples = helper::test::synthesisedSpeech(m_directory);
    m_desk.startSayloft();
    ASSERT_NO_FATAL_FAILURE(dictate(samples));
    expectNoMoreErrorsThanTheTool("synthesised", samples, linesOfEditor());
}

}  // namespace
}  // namespace sayloft
