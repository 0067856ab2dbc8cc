// SPDX-License-Identifier: MIT
#include "app/DictationSession.h"

#include "app/TextFigures.h"
#include "app/TranscriptionThread.h"
#include "audio/FailedRecording.h"
#include "audio/Recorder.h"
#include "audio/Recording.h"
#include "overlay/Overlay.h"
#include "platform/SystemSounds.h"
#include "speech/Paster.h"
#include "speech/Replacements.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/Log.h"

#include <QTimer>

#include <utility>

namespace sayloft {

using namespace std::chrono_literals;

DictationSession::DictationSession(const DictationParts& parts, DictationHost& host,
                                   std::function<Clock::time_point()> now)
    : m_parts(parts), m_host(host), m_now(std::move(now)) {}

void DictationSession::beginRecording(bool enter, Mods chord) {
    if (m_running.isRecording)
        return;
    m_running = {.isRecording = true, .activeChord = chord};
    m_pendingEnter = enter;
    m_recordStart = m_now();

    m_host.setState(IconState::recording);
    if (m_parts.cfg.playSounds)
        m_parts.sounds.play(QStringLiteral("Pop"));
    if (Overlay* overlay = m_host.dictationOverlay())
        overlay->setActive(true);
    m_parts.recorder.start();
}

void DictationSession::endRecording() {
    if (!m_running.isRecording)
        return;
    m_running = {};
    m_host.setState(IconState::warming);
    if (Overlay* overlay = m_host.dictationOverlay())
        overlay->stopTimer();

    auto recording = m_parts.recorder.stop();
    if (!recording) {
        if (Overlay* overlay = m_host.dictationOverlay())
            overlay->setActive(false);
        m_host.setState(IconState::ready);
        m_host.dictationEnded();
        return;
    }

    const std::chrono::duration<double> held = m_now() - m_recordStart;
    const Finished dictation{
        .enter = m_pendingEnter, .seconds = held.count(), .number = ++m_dictations};
    // Reading the user's clipboard takes a while and so does the transcription.
    if (!m_parts.cfg.leaveInClipboard)
        m_parts.paster.prepare();

    auto* thread =
        new TranscriptionThread(m_parts.transcriber, std::move(recording), dictation.number, this);
    m_transcribing.push_back(thread);
    connect(thread, &QThread::finished, this, [this, thread, dictation] {
        // Given up after it had ended, but before this was called.
        if (std::erase(m_transcribing, thread) == 0)
            return;
        thread->deleteLater();
        transcriptionFinished(thread->text(), dictation);
        m_host.dictationEnded();
    });
    thread->start();
}

void DictationSession::giveUp() {
    keepWhatIsBeingSaid();
    for (TranscriptionThread* const thread : std::exchange(m_transcribing, {})) {
        thread->giveUp();
        if (const auto& text = thread->text()) {
            const QString corrected = applyReplacements(*text, m_parts.cfg.replacements);
            logTranscript(corrected);
            remember(corrected, thread->number());
        }
        delete thread;
    }
}

void DictationSession::keepWhatIsBeingSaid() {
    if (!std::exchange(m_running, {}).isRecording)
        return;
    if (const auto recording = m_parts.recorder.stop())
        FailedRecording::keep(recording->waitUntilFinished(), ++m_dictations);
}

void DictationSession::flashError() {
    m_host.setState(IconState::error);
    QTimer::singleShot(1800ms, this, [this] {
        m_host.setState(m_host.serverReady() ? IconState::ready : IconState::warming);
    });
}

void DictationSession::transcriptionFinished(const std::optional<QString>& text,
                                             const Finished& dictation) {
    if (text) {
        deliver(applyReplacements(*text, m_parts.cfg.replacements), dictation);
        return;
    }
    logf(QStringLiteral("TRANSCRIBE FAILED"));
    flashError();
    if (Overlay* overlay = m_host.dictationOverlay())
        overlay->setActive(false);
}

void DictationSession::logTranscript(const QString& text) const {
    const QString trusted =
        m_host.accessibilityTrusted() ? QStringLiteral("true") : QStringLiteral("false");
    logf(QStringLiteral("TRANSCRIPT len=") + QString::number(characterCount(text)) +
         QStringLiteral(" trusted=") + trusted + QStringLiteral(" text='") + text +
         QLatin1Char('\''));
}

void DictationSession::remember(const QString& text, std::uint64_t dictation) {
    if (text.isEmpty())
        return;
    m_parts.history.add(text);
    FailedRecording::forgetBefore(dictation);
}

void DictationSession::deliver(const QString& text, const Finished& dictation) {
    logTranscript(text);
    m_parts.paster.paste(
        text, {.pressEnter = dictation.enter, .keepInClipboard = m_parts.cfg.leaveInClipboard});
    m_host.setState(IconState::ready);
    if (!text.isEmpty()) {
        if (m_parts.cfg.playSounds)
            m_parts.sounds.play(QStringLiteral("Tink"));
        remember(text, dictation.number);
        m_host.buildMenu();
    }
    reportOnOverlay(text, dictation.seconds);
}

void DictationSession::reportOnOverlay(const QString& text, double seconds) {
    Overlay* overlay = m_host.dictationOverlay();
    if (overlay == nullptr)
        return;
    const int words = wordCount(text);
    if (words == 0) {
        overlay->setActive(false);
        return;
    }
    const int wpm = seconds > 0.5 ? wordsPerMinute(words, seconds) : 0;
    if (m_parts.cfg.pillStyle == QStringLiteral("full") && wpm >= 1)
        overlay->showStats(wpm);
    else
        overlay->holdThenHide();
}

}  // namespace sayloft
