// SPDX-License-Identifier: MIT
#pragma once

#include "app/ChordMachine.h"
#include "app/StatusItem.h"
#include "platform/Mods.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace sayloft {

struct Config;
class History;
class Overlay;
class Paster;
class Recorder;
class SystemSounds;
class TranscriptionThread;
class Transcriber;
class TranscriptionThread;

/// What a dictation asks of the program around it. Main thread.
class DictationHost {
public:
    virtual ~DictationHost() = default;

    virtual void setState(IconState state) = 0;
    virtual void buildMenu() = 0;
    [[nodiscard]] virtual Overlay* dictationOverlay() = 0;  ///< may be null
    [[nodiscard]] virtual bool accessibilityTrusted() const = 0;
    [[nodiscard]] virtual bool serverReady() const = 0;
    /// Whatever has come of it.
    virtual void dictationEnded() = 0;
};

/// The parts that a dictation is made of; all of them outlive the session.
struct DictationParts {
    const Config& cfg;
    Recorder& recorder;
    const Transcriber& transcriber;
    Paster& paster;
    History& history;
    SystemSounds& sounds;
};

/// From chord-down to pasted text. A new dictation may begin while earlier ones are still being
/// transcribed. Main thread; only the transcription runs on a thread of its own.
class DictationSession : public QObject {
public:
    using Clock = std::chrono::steady_clock;

    /// `now` tells the time by which holds are measured.
    DictationSession(const DictationParts& parts, DictationHost& host,
                     std::function<Clock::time_point()> now = &Clock::now);

    void beginRecording(bool enter, Mods chord);
    void endRecording();

    /// Gives up what is still being said or transcribed, whose sound is kept; a transcript that has
    /// just come goes to log and history. Prompt.
    void giveUp();

    /// Shows the error icon for a moment.
    void flashError();

    [[nodiscard]] bool isTranscribing() const { return !m_transcribing.empty(); }
    [[nodiscard]] const RunningDictation& running() const { return m_running; }

private:
    struct Finished {
        bool enter = false;
        double seconds = 0;        ///< from chord-down to chord-up
        std::uint64_t number = 0;  ///< in the order of the recordings, from 1
    };

    void keepWhatIsBeingSaid();
    void transcriptionFinished(const std::optional<QString>& text, const Finished& dictation);
    void deliver(const QString& text, const Finished& dictation);
    void logTranscript(const QString& text) const;
    void remember(const QString& text, std::uint64_t dictation);
    void reportOnOverlay(const QString& text, double seconds);

    DictationParts m_parts;
    DictationHost& m_host;
    RunningDictation m_running;
    bool m_pendingEnter = false;
    std::uint64_t m_dictations = 0;
    std::vector<TranscriptionThread*> m_transcribing;  ///< children that have not been heard yet
    std::function<Clock::time_point()> m_now;
    Clock::time_point m_recordStart;
};

}  // namespace sayloft
