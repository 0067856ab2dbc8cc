// SPDX-License-Identifier: MIT
#include "app/TranscriptionThread.h"

#include "audio/FailedRecording.h"
#include "audio/Recording.h"
#include "speech/Transcriber.h"

#include <utility>

namespace sayloft {

TranscriptionThread::TranscriptionThread(const Transcriber& transcriber,
                                         std::shared_ptr<Recording> recording, std::uint64_t number,
                                         QObject* parent)
    : QThread(parent),
      m_transcriber(transcriber),
      m_recording(std::move(recording)),
      m_number(number) {}

TranscriptionThread::~TranscriptionThread() {
    giveUp();
}

void TranscriptionThread::giveUp() {
    m_stop.request_stop();
    wait();
}

void TranscriptionThread::run() {
    const QString file = m_recording->waitUntilFinished();
    auto text = m_transcriber.transcribe(file, m_stop.get_token());
    if (!text)
        FailedRecording::keep(file, m_number);
    // The recording's file name is free for the next one from here on.
    m_recording.reset();
    m_transcribed.set_value(std::move(text));
}

}  // namespace sayloft
