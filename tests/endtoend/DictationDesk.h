// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ModelHost.h"
#include "tests/support/RawHttpServer.h"
#include "tests/support/SayloftProgram.h"
#include "tests/support/SessionBus.h"
#include "tests/support/SoundServer.h"
#include "tests/support/TargetApplication.h"
#include "tests/support/TestKeyboard.h"
#include "tests/support/Waveform.h"
#include "tests/support/WindowManager.h"
#include "tests/support/XServer.h"

#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <vector>

namespace sayloft::test {

/// A desktop with a keyboard, a microphone and an editor that has the focus, and the real program
/// to dictate with. Functions throw std::runtime_error when what they wait for does not come.
class DictationDesk {
public:
    using Chord = std::vector<TestKeyboard::Key>;

    static inline const Chord dictate{TestKeyboard::shiftLeft, TestKeyboard::superLeft};
    /// The chord that presses Return too, in every configuration that this object writes.
    static inline const Chord dictateEnter{TestKeyboard::shiftLeft, TestKeyboard::controlLeft};

    DictationDesk();

    /// For the program only; before it is started.
    void setEnvironment(const QString& name, const QString& value);

    /// What it is started with.
    [[nodiscard]] QProcessEnvironment environment() const;

    /// As if this were the network.
    void connectTo(const ModelHost& host) { host.addTo(m_extraEnvironment); }

    /// Starts the program with its own speech helper. `settings` are members of its configuration
    /// beside those that every test shares.
    void startSayloft(const QByteArray& settings = {});
    /// The same with another bundle.
    void startSayloftFrom(const QString& bundle, const QByteArray& settings = {});

    /// Starts it for the first time: with its own speech helper and without a configuration.
    void startSayloftForTheFirstTime();
    /// Starts it anew with what it has kept.
    void restartSayloft();

    /// Starts it with a helper that leaves the answers to the test: the dictations get `answers`,
    /// one for each connection, the last of them again and again.
    void startSayloft(const std::vector<RawAnswer>& answers, const QByteArray& settings = {});

    /// The same in two steps: first everything but the program itself. Again and again, too.
    void prepare(const std::vector<RawAnswer>& answers, const QByteArray& settings = {});
    void startPrepared();
    /// The same, but returns when the program is ready, whether it can write a log or not.
    void startPreparedWithoutLog();

    /// Starts it with a helper that behaves as the model file, which has this text, tells it.
    void startSayloftWithHelper(const QByteArray& behaviour);

    /// Starts it with a helper for the test's answers that does not listen yet.
    void startSayloftWithoutServer();
    /// Ends that.
    void startServer(const std::vector<RawAnswer>& answers);

    /// The program is run by this command line at later starts.
    void runBy(const QStringList& command) { m_runBy = command; }

    /// Presses the keys and waits until the microphone is open.
    void hold(const Chord& chord = dictate);
    void letGo(const Chord& chord = dictate);
    /// Presses the keys and waits for nothing.
    void press(const Chord& chord = dictate);

    /// Holds the chord while the sound is played into the room.
    void say(const QString& wavPath, const Chord& chord = dictate);
    /// The same with `sound()`, for tests in which the words come from elsewhere.
    void say(const Chord& chord = dictate);

    /// Half a second of noise.
    [[nodiscard]] const Samples& sound() const { return m_noise; }
    [[nodiscard]] QString soundFile() const { return m_noiseFile; }
    /// The file of the last recording, which is left as it is until the next one begins.
    [[nodiscard]] QString lastRecording() const {
        return home() + QStringLiteral("/.sayloft/tmp/sayloft_rec.wav");
    }
    [[nodiscard]] QString home() const { return m_directory.filePath(QStringLiteral("home")); }
    /// A file in the folder where the program keeps its own.
    [[nodiscard]] QString dataFile(const QString& name) const {
        return home() + QStringLiteral("/.sayloft/") + name;
    }
    /// What the speech server was sent, oldest first.
    [[nodiscard]] std::vector<Samples> recordings() const;

    /// What the log says was transcribed so far, oldest first.
    [[nodiscard]] QStringList transcripts() const;
    /// Waits until `count` transcripts or more are in the log.
    [[nodiscard]] bool waitForTranscripts(
        qsizetype count, std::chrono::milliseconds deadline = std::chrono::seconds(20)) const;
    /// The bytes of history.json.
    [[nodiscard]] QByteArray history() const;

    /// How many streams the program records from just now.
    [[nodiscard]] qsizetype openMicrophones() const;
    /// Waits until the program has found the sound server.
    void waitForSound() const;

    [[nodiscard]] const XServer& display() const { return m_display; }
    [[nodiscard]] XServer& display() { return m_display; }
    [[nodiscard]] SessionBus& bus() { return m_bus; }
    [[nodiscard]] TestKeyboard& keyboard() { return m_keyboard; }
    [[nodiscard]] SoundServer& room() { return m_room; }
    [[nodiscard]] TargetApplication& editor() { return m_editor; }
    [[nodiscard]] SayloftProgram& sayloft() { return *m_sayloft; }

private:
    void start(const QByteArray& settings, const QString& bundle);
    void launch(const QString& bundle);
    void launchProgram(const QString& bundle);
    void listen(const std::vector<RawAnswer>& answers);
    void waitUntilAsked() const;
    /// Made once.
    [[nodiscard]] const QString& bundleWithHelper(const QByteArray& behaviour);
    [[nodiscard]] QString modelFile() const {
        return dataFile(QStringLiteral("models/starter-en-us.model"));
    }

    QTemporaryDir m_directory;
    XServer m_display;
    WindowManager m_windowManager{m_display};
    SessionBus m_bus;
    SoundServer m_room;
    TestKeyboard m_keyboard;
    TargetApplication m_editor{Target::mousepad, m_display};
    Samples m_noise = noise(8000);
    QString m_noiseFile = m_directory.filePath(QStringLiteral("noise.wav"));
    QStringList m_runBy;
    QString m_bundleWithHelper;
    std::unique_ptr<RawHttpServer> m_speechServer;
    QProcessEnvironment m_extraEnvironment;
    std::unique_ptr<SayloftProgram> m_sayloft;
};

}  // namespace sayloft::test
