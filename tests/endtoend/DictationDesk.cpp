// SPDX-License-Identifier: MIT
#include "tests/endtoend/DictationDesk.h"

#include "tests/support/TempHome.h"
#include "tests/support/TrayClient.h"
#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <stdexcept>

namespace sayloft::test {
namespace {

using namespace std::chrono_literals;

QByteArray configuration(const QByteArray& settings) {
    QByteArray json = R"({"model":"starter","dictateEnterChords":[5])";
    if (!settings.isEmpty())
        json += ',' + settings;
    return json + '}';
}

QByteArray wavIn(const QByteArray& request) {
    const QByteArray before = "Content-Type: audio/wav\r\n\r\n";
    const qsizetype from = request.indexOf(before) + before.size();
    return request.mid(from, request.lastIndexOf("\r\n--Sayloft", -50) - from);
}

qsizetype mentionsOfSayloft(const SoundServer& room, const QString& list) {
    return room.list(list).count("application.process.binary = \"sayloft\"");
}

}  // namespace

DictationDesk::DictationDesk() {
    writeSound(m_noiseFile, m_noise);
}

void DictationDesk::setEnvironment(const QString& name, const QString& value) {
    m_extraEnvironment.insert(name, value);
}

void DictationDesk::startSayloft(const QByteArray& settings) {
    startSayloftFrom(QStringLiteral(SAYLOFT_BUNDLE_DIR), settings);
}

void DictationDesk::startSayloftFrom(const QString& bundle, const QByteArray& settings) {
    start(settings, bundle);
    if (!m_sayloft->waitForHelper())
        throw std::runtime_error("the speech helper did not come up");
}

void DictationDesk::startSayloftForTheFirstTime() {
    QDir().mkpath(home());
    launch(QStringLiteral(SAYLOFT_BUNDLE_DIR));
}

void DictationDesk::restartSayloft() {
    m_sayloft.reset();
    QFile::remove(home() + QStringLiteral("/.sayloft/sayloft.log"));
    launch(QStringLiteral(SAYLOFT_BUNDLE_DIR));
}

void DictationDesk::startSayloft(const std::vector<RawAnswer>& answers,
                                 const QByteArray& settings) {
    prepare(answers, settings);
    startPrepared();
}

void DictationDesk::prepare(const std::vector<RawAnswer>& answers, const QByteArray& settings) {
    writeConfig(home(), configuration(settings));
    static_cast<void>(bundleWithHelper("relay"));
    listen(answers);
}

void DictationDesk::startPrepared() {
    launch(bundleWithHelper("relay"));
    waitUntilAsked();
}

void DictationDesk::startPreparedWithoutLog() {
    launchProgram(bundleWithHelper("relay"));
    if (!TrayClient(m_bus).tooltipSays(QStringLiteral("'Sayloft: ready'")))
        throw std::runtime_error("Sayloft did not become ready");
    waitForSound();
}

void DictationDesk::startSayloftWithHelper(const QByteArray& behaviour) {
    start({}, bundleWithHelper(behaviour));
    if (!m_sayloft->waitForHelper())
        throw std::runtime_error("the speech helper did not come up");
}

void DictationDesk::startSayloftWithoutServer() {
    start({}, bundleWithHelper("relay"));
}

void DictationDesk::startServer(const std::vector<RawAnswer>& answers) {
    listen(answers);
    waitUntilAsked();
}

void DictationDesk::listen(const std::vector<RawAnswer>& answers) {
    std::vector<RawAnswer> script{RawAnswer::ok("ready")};
    script.insert(script.end(), answers.begin(), answers.end());
    m_speechServer = std::make_unique<RawHttpServer>(script);
    writeFile(modelFile() + QStringLiteral(".port"),
              QByteArray::number(m_speechServer->port()) + '\n');
}

// Afterwards every connection is a dictation.
void DictationDesk::waitUntilAsked() const {
    if (!waitUntil([this] { return !m_speechServer->requests().empty(); }))
        throw std::runtime_error("nobody asked whether the speech server is ready: " +
                                 m_sayloft->log().toStdString());
}

void DictationDesk::start(const QByteArray& settings, const QString& bundle) {
    writeConfig(home(), configuration(settings));
    launch(bundle);
}

void DictationDesk::launch(const QString& bundle) {
    launchProgram(bundle);
    if (!m_sayloft->waitForLog(QStringLiteral("event tap installed OK")))
        throw std::runtime_error("Sayloft did not come up: " + m_sayloft->log().toStdString());
    waitForSound();
}

void DictationDesk::launchProgram(const QString& bundle) {
    m_sayloft.reset();
    m_sayloft = std::make_unique<SayloftProgram>(home(), environment(), bundle, m_runBy);
}

QProcessEnvironment DictationDesk::environment() const {
    QProcessEnvironment environment = m_display.environment();
    m_bus.addTo(environment);
    m_room.addTo(environment);
    environment.insert(m_extraEnvironment);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_directory.path());
    return environment;
}

const QString& DictationDesk::bundleWithHelper(const QByteArray& behaviour) {
    if (m_bundleWithHelper.isEmpty()) {
        m_bundleWithHelper = bundleWithForeignHelper(m_directory.filePath(QStringLiteral("own")));
        writeFile(modelFile(), behaviour);
    }
    return m_bundleWithHelper;
}

void DictationDesk::waitForSound() const {
    if (!waitUntil([this] { return mentionsOfSayloft(m_room, QStringLiteral("clients")) > 0; }))
        throw std::runtime_error("Sayloft did not find the sound server");
}

qsizetype DictationDesk::openMicrophones() const {
    return mentionsOfSayloft(m_room, QStringLiteral("source-outputs"));
}

void DictationDesk::hold(const Chord& chord) {
    // The microphone stays open for a moment after a dictation.
    if (!waitUntil([this] { return openMicrophones() == 0; }))
        throw std::runtime_error("the microphone stays open");
    press(chord);
    if (!waitUntil([this] { return openMicrophones() > 0; }))
        throw std::runtime_error("the microphone stays closed");
}

void DictationDesk::press(const Chord& chord) {
    for (const TestKeyboard::Key key : chord)
        m_keyboard.press(key);
}

void DictationDesk::letGo(const Chord& chord) {
    std::for_each(chord.rbegin(), chord.rend(),
                  [this](TestKeyboard::Key key) { m_keyboard.release(key); });
}

void DictationDesk::say(const QString& wavPath, const Chord& chord) {
    hold(chord);
    m_room.play(wavPath);
    letGo(chord);
}

void DictationDesk::say(const Chord& chord) {
    say(m_noiseFile, chord);
}

std::vector<Samples> DictationDesk::recordings() const {
    const std::vector<QByteArray> requests = m_speechServer->requests();
    const QString file = m_directory.filePath(QStringLiteral("sent.wav"));
    std::vector<Samples> recordings;
    for (std::size_t i = 1; i < requests.size(); ++i) {
        writeFile(file, wavIn(requests[i]));
        recordings.push_back(readSound(file));
    }
    return recordings;
}

QStringList DictationDesk::transcripts() const {
    static const QRegularExpression form(
        QStringLiteral("TRANSCRIPT len=\\d+ trusted=true text='(.*)'$"),
        QRegularExpression::MultilineOption);
    QStringList texts;
    for (auto matches = form.globalMatch(m_sayloft->log()); matches.hasNext();)
        texts.append(matches.next().captured(1));
    return texts;
}

bool DictationDesk::waitForTranscripts(qsizetype count, std::chrono::milliseconds deadline) const {
    return waitUntil([&] { return transcripts().size() >= count; }, deadline);
}

QByteArray DictationDesk::history() const {
    return readFile(home() + QStringLiteral("/.sayloft/history.json"));
}

}  // namespace sayloft::test
