// SPDX-License-Identifier: MIT
// From somebody's voice to the text in an editor.
#include "helper/tests/SpeechSamples.h"
#include "tests/endtoend/DictationDesk.h"
#include "tests/support/Waveform.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;
using helper::test::errorRate;
using helper::test::runCommandLineTool;
using helper::test::SpeechSample;

/// What the starter's recogniser is set to.
const QStringList starterSettings{QStringLiteral("-lw"), QStringLiteral("5"),
                                  QStringLiteral("-maxhmmpf"), QStringLiteral("5000")};

class DictationRoad : public testing::Test {
protected:
    /// Dictates every sample on a line of its own.
    void dictate(const std::vector<SpeechSample>& samples) {
        for (const SpeechSample& sample : samples) {
            m_desk.say(sample.file, DictationDesk::dictateEnter);
            m_spoken.push_back(sample);
            ASSERT_TRUE(m_desk.waitForTranscripts(std::ssize(m_spoken), 60s)) << sample.words;
            m_recorded.push_back({keptRecording(), sample.words});
        }
    }

    /// Whether all that was spoken was recorded. What is louder or quieter is alike.
    void expectFaithfulRecordings() const {
        for (std::size_t i = 0; i < m_spoken.size(); ++i) {
            const Samples spoken = readSound(m_spoken[i].file);
            const Match match = find(spoken, readSound(m_recorded[i].file));
            EXPECT_GE(match.heard, spoken.size() - swallowedAtTheStart) << m_spoken[i].words;
            EXPECT_GT(match.likeness, 0.95) << m_spoken[i].words;
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
    std::vector<SpeechSample> m_spoken;
    std::vector<SpeechSample> m_recorded;

private:
    /// The sound server may swallow the first 20 ms of what is played.
    static constexpr std::size_t swallowedAtTheStart = 320;

    [[nodiscard]] QString keptRecording() const {
        QString kept = m_directory.filePath(QStringLiteral("%1.wav").arg(m_recorded.size()));
        EXPECT_TRUE(QFile::copy(m_desk.lastRecording(), kept));
        return kept;
    }
};

// The words are compared with those that the recogniser's own tool hears in the same recording. In
// the sound that was played it hears others now and then: by where a sound begins within the
// recogniser's frames of 10 ms, and by how loud it is, 18 to 24 of the 71 words of people are
// wrong.
TEST_F(DictationRoad, bringsTheVeryWordsThatTheRecogniserHearsInAFaithfulRecording) {
    m_desk.startSayloft();
    ASSERT_NO_FATAL_FAILURE(dictate(helper::test::recordedSpeech()));
    ASSERT_NO_FATAL_FAILURE(dictate(helper::test::synthesisedSpeech(m_directory)));
    expectFaithfulRecordings();
    const std::vector<std::string> lines = linesOfEditor();
    EXPECT_EQ(lines, runCommandLineTool(m_recorded, starterSettings).heard);
    std::printf(
        "word error rate: the whole road %.1f %%, pocketsphinx_batch %.1f %% with the same "
        "recordings, %.1f %% with what was played\n",
        errorRate(m_spoken, lines), errorRate(m_recorded, runCommandLineTool(m_recorded).heard),
        errorRate(m_spoken, runCommandLineTool(m_spoken).heard));
}

}  // namespace
}  // namespace sayloft::test
