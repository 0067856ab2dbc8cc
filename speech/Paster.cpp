// SPDX-License-Identifier: MIT
#include "speech/Paster.h"

#include "platform/KeyPoster.h"
#include "platform/Mods.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace sayloft {
namespace {

using namespace std::chrono_literals;

constexpr std::uint64_t noFlags = 0;
// Long enough for the target to have put the text in before Return acts.
constexpr auto returnDelay = 30ms;
// What a target takes to read the clipboard after the paste key.
constexpr auto restoreDelay = 300ms;
// Some applications read the clipboard more than once for one paste.
constexpr auto restoreDelayAfterFetch = 50ms;
constexpr auto longestWaitForFetch = 2000ms;

}  // namespace

Paster::Paster(Clipboard& clipboard, KeyPoster& keyPoster)
    : m_clipboard(clipboard), m_keyPoster(keyPoster) {}

void Paster::prepare() {
    m_clipboard.prepareSnapshot();
}

void Paster::paste(const QString& text, PasteOptions options) {
    if (text.isEmpty())
        return;
    m_jobs.push_back({.text = text, .options = options, .before = {}, .sincePasteKey = {}});
    if (m_jobs.size() == 1)
        startNext();
}

void Paster::copy(const QString& text) {
    m_toRestore.reset();
    if (!m_jobs.empty())
        m_jobs.front().before.reset();
    m_clipboard.setText(text, ClipboardStay::forGood);
}

void Paster::startNext() {
    // A restore of an earlier paste that is still to come would now take this one's text away.
    ++m_generation;
    m_toRestore.reset();
    // What counts is the clipboard at the paste: the user may copy something until then.
    m_keyPoster.whenReady([self = QPointer<Paster>(this)] {
        if (self)
            self->saveClipboard();
    });
}

void Paster::saveClipboard() {
    if (m_jobs.front().options.keepInClipboard)
        return takeClipboard();
    m_clipboard.takeSnapshot(
        [self = QPointer<Paster>(this)](std::optional<ClipboardSnapshot> before) {
            if (!self)
                return;
            self->m_jobs.front().before = std::move(before);
            self->takeClipboard();
        });
}

void Paster::takeClipboard() {
    const Job& job = m_jobs.front();
    m_clipboard.setText(job.text, job.options.keepInClipboard ? ClipboardStay::forGood
                                                              : ClipboardStay::forOnePaste);
    m_keyPoster.postKey(VirtualKey::v, KeyFlag::command, [self = QPointer<Paster>(this)] {
        if (self)
            self->pasteKeyPosted();
    });
}

void Paster::pasteKeyPosted() {
    m_jobs.front().sincePasteKey.start();
    m_clipboard.whenTextFetched(longestWaitForFetch, [self = QPointer<Paster>(this)] {
        if (self)
            self->textFetched();
    });
}

void Paster::textFetched() {
    Job& job = m_jobs.front();
    job.fetchedAt = job.sincePasteKey.elapsed();
    if (!job.options.pressEnter)
        return keysDone();
    QTimer::singleShot(returnDelay, Qt::PreciseTimer, this, [this] {
        m_keyPoster.postKey(VirtualKey::returnKey, noFlags, [self = QPointer<Paster>(this)] {
            if (self)
                self->keysDone();
        });
    });
}

void Paster::keysDone() {
    restoreLater();
    m_jobs.pop_front();
    if (!m_jobs.empty())
        startNext();
}

void Paster::restoreLater() {
    Job& job = m_jobs.front();
    if (!job.before)
        return;
    using std::chrono::milliseconds;
    const milliseconds now(job.sincePasteKey.elapsed());
    const milliseconds keys = job.options.pressEnter ? now : 0ms;
    const milliseconds afterFetch = std::min<milliseconds>(
        milliseconds(job.fetchedAt) + restoreDelayAfterFetch, longestWaitForFetch);
    const milliseconds due = std::max<milliseconds>(keys + restoreDelay, afterFetch);
    m_toRestore = std::move(job.before);
    QTimer::singleShot(std::max<milliseconds>(due - now, 0ms), Qt::PreciseTimer, this,
                       [this, generation = m_generation] {
                           if (generation == m_generation)
                               restoreNow();
                       });
}

void Paster::restoreForGood() {
    if (!m_jobs.empty() && m_jobs.front().before)
        m_toRestore = std::move(m_jobs.front().before);
    restoreNow();
}

void Paster::restoreNow() {
    if (const auto before = std::exchange(m_toRestore, std::nullopt))
        m_clipboard.restore(*before);
}

}  // namespace sayloft
