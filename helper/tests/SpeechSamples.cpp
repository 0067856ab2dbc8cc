// SPDX-License-Identifier: MIT
#include "helper/tests/SpeechSamples.h"

#include "helper/tests/WordErrors.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/TempHome.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <stdexcept>

namespace sayloft::helper::test {
namespace {

using namespace std::chrono_literals;

const QString modelFolder = QStringLiteral("/usr/share/pocketsphinx/model/en-us/");
const QString recordingFolder = QStringLiteral("/usr/share/pocketsphinx/test/data/librivox/");

// Everyday sentences; the recogniser does not get all of them right.
constexpr const char* sentences[] = {
    "the weather is nice today",
    "please send me the report before noon",
    "we will meet at the station tomorrow morning",
    "i would like a cup of coffee",
    "the meeting starts at ten in the morning",
    "can you call me back this afternoon",
    "the train leaves in twenty minutes",
    "this is a test of the dictation system",
    "she opened the window and looked at the garden",
    "thank you very much for your help",
};

QStringList linesOf(const QByteArray& text) {
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// A transcription's line is `<s> words </s> (name)`.
SpeechSample readTranscription(const QString& line) {
    static const QRegularExpression form(QStringLiteral("^<s> (.*) </s> \\((.*)\\)$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        throw std::runtime_error("not a transcription: " + line.toStdString());
    return {recordingFolder + match.captured(2) + QStringLiteral(".wav"),
            match.captured(1).toStdString()};
}

// Of a file without further parts. The tool would take it for sound.
constexpr int wavHeaderBytes = 44;

// The tool takes paths without their first slash and their extension.
QByteArray controlFile(const std::vector<SpeechSample>& samples) {
    QByteArray lines;
    for (const SpeechSample& sample : samples) {
        const QFileInfo file(sample.file);
        lines += (file.path().mid(1) + QLatin1Char('/') + file.completeBaseName()).toUtf8() + '\n';
    }
    return lines;
}

QStringList toolArguments(const QString& control, const QString& hypotheses) {
    return {QStringLiteral("-hmm"),    modelFolder + QStringLiteral("en-us"),
            QStringLiteral("-lm"),     modelFolder + QStringLiteral("en-us.lm.bin"),
            QStringLiteral("-dict"),   modelFolder + QStringLiteral("cmudict-en-us.dict"),
            QStringLiteral("-adcin"),  QStringLiteral("yes"),
            QStringLiteral("-adchdr"), QString::number(wavHeaderBytes),
            QStringLiteral("-cepdir"), QStringLiteral("/"),
            QStringLiteral("-cepext"), QStringLiteral(".wav"),
            QStringLiteral("-ctl"),    control,
            QStringLiteral("-hyp"),    hypotheses};
}

QByteArray logOfTool(const QStringList& arguments) {
    sayloft::test::ChildProgram tool(QStringLiteral("pocketsphinx_batch"), arguments);
    if (!tool.waitForEnd(300s) || tool.exitCode() != 0)
        throw std::runtime_error("pocketsphinx_batch failed");
    return tool.standardError();
}

std::vector<Duration> decodingTimes(const QByteArray& log) {
    static const QRegularExpression form(
        QStringLiteral(": [0-9.]+ seconds speech, ([0-9.]+) seconds CPU, ([0-9.]+) seconds wall"));
    std::vector<Duration> times;
    for (const QString& line : linesOf(log)) {
        if (const auto match = form.match(line); match.hasMatch())
            times.push_back({match.captured(1).toDouble(), match.captured(2).toDouble()});
    }
    return times;
}

}  // namespace

std::string wavOf(const SpeechSample& sample) {
    const QByteArray bytes = sayloft::test::readFile(sample.file);
    if (bytes.isEmpty())
        throw std::runtime_error("cannot read " + sample.file.toStdString());
    return bytes.toStdString();
}

double secondsOf(const SpeechSample& sample) {
    constexpr double bytesASecond = 2 * 16000;
    return (static_cast<double>(wavOf(sample).size()) - wavHeaderBytes) / bytesASecond;
}

std::vector<SpeechSample> recordedSpeech() {
    std::vector<SpeechSample> samples;
    for (const QString& line :
         linesOf(sayloft::test::readFile(recordingFolder + QStringLiteral("transcription"))))
        samples.push_back(readTranscription(line));
    if (samples.empty())
        throw std::runtime_error("the package pocketsphinx-testdata is missing");
    return samples;
}

SpeechSample speak(const QTemporaryDir& directory, const std::string& words) {
    QString name = QString::fromStdString(words).replace(QLatin1Char(' '), QLatin1Char('_'));
    name = directory.filePath(name + QStringLiteral(".wav"));
    sayloft::test::run(QStringLiteral("flite"),
                       {QStringLiteral("-voice"), QStringLiteral("rms"), QStringLiteral("-t"),
                        QString::fromStdString(words), QStringLiteral("-o"), name});
    return {name, words};
}

std::vector<SpeechSample> synthesisedSpeech(const QTemporaryDir& directory) {
    std::vector<SpeechSample> samples;
    for (const char* sentence : sentences)
        samples.push_back(speak(directory, sentence));
    return samples;
}

CommandLineRun runCommandLineTool(const std::vector<SpeechSample>& samples,
                                  const QStringList& settings) {
    const QTemporaryDir directory;
    const QString control = directory.filePath(QStringLiteral("files"));
    const QString hypotheses = directory.filePath(QStringLiteral("heard"));
    sayloft::test::writeFile(control, controlFile(samples));
    CommandLineRun result;
    result.decoding = decodingTimes(logOfTool(toolArguments(control, hypotheses) + settings));
    // A line is `words (name score)`; a sample without words has an empty one.
    for (const QString& line : linesOf(sayloft::test::readFile(hypotheses)))
        result.heard.push_back(
            line.left(line.lastIndexOf(QLatin1Char('('))).trimmed().toStdString());
    if (result.heard.size() != samples.size() || result.decoding.size() != samples.size())
        throw std::runtime_error("pocketsphinx_batch did not say what it heard in each file");
    return result;
}

double errorRate(const std::vector<SpeechSample>& samples, const std::vector<std::string>& heard) {
    int errors = 0;
    std::size_t words = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        errors += wordErrors(samples[i].words, heard.at(i));
        words += wordsOf(samples[i].words).size();
    }
    return 100.0 * errors / static_cast<double>(words);
}

}  // namespace sayloft::helper::test
