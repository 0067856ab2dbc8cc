// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <vector>

namespace sayloft::helper::test {

/// Somebody saying something: a WAV file and the words in it, lower case and without punctuation.
struct SpeechSample {
    QString file;
    std::string words;
};

/// The file's bytes.
[[nodiscard]] std::string wavOf(const SpeechSample& sample);

/// Length in seconds of 16 kHz mono speech.
[[nodiscard]] double secondsOf(const SpeechSample& sample);

/// People reading from a novel (LibriVox), as Debian's pocketsphinx-testdata ships them.
[[nodiscard]] std::vector<SpeechSample> recordedSpeech();

/// The words spoken by Debian's speech synthesiser flite with its voice `rms`, in `directory`.
[[nodiscard]] SpeechSample speak(const QTemporaryDir& directory, const std::string& words);

/// Ten sentences spoken like that.
[[nodiscard]] std::vector<SpeechSample> synthesisedSpeech(const QTemporaryDir& directory);

/// Both in seconds.
struct Duration {
    double processor = 0;
    double wall = 0;
};

/// What the recogniser's own command-line tool, pocketsphinx_batch, made of some samples, one entry
/// for each in their order. `settings` are arguments of the tool beside its defaults.
struct CommandLineRun {
    std::vector<std::string> heard;
    std::vector<Duration> decoding;  ///< as the tool reports it, without the loading
};
[[nodiscard]] CommandLineRun runCommandLineTool(const std::vector<SpeechSample>& samples,
                                                const QStringList& settings = {});

/// Percentage of wrong words over all samples; `heard` has one entry for each.
[[nodiscard]] double errorRate(const std::vector<SpeechSample>& samples,
                               const std::vector<std::string>& heard);

}  // namespace sayloft::helper::test
