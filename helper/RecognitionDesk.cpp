// SPDX-License-Identifier: MIT
#include "helper/RecognitionDesk.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace sayloft::helper {
namespace {

// How long a departed client may go unnoticed; looking costs one system call.
constexpr auto lookEvery = std::chrono::milliseconds(100);

}  // namespace

RecognitionDesk::RecognitionDesk(Recognise recognise) : m_recognise(std::move(recognise)) {}

std::optional<std::string> RecognitionDesk::transcribe(Samples samples,
                                                       const ClientIsThere& clientIsThere) {
    std::unique_lock lock(m_mutex);
    const Entry entry = enter(std::move(samples));
    while (entry->stage != Stage::Finished) {
        if (isNext(entry)) {
            decode(entry, lock);
            continue;
        }
        m_changed.wait_for(lock, lookEvery);
        if (entry->stage != Stage::Finished && !clientIsThere()) {
            leave(entry);
            return std::nullopt;
        }
    }
    return entry->transcript;
}

RecognitionDesk::Entry RecognitionDesk::enter(Samples samples) {
    const auto isSame = [&samples](const Entry& entry) { return entry->samples == samples; };
    if (m_last && isSame(m_last))
        return m_last;
    auto found = std::find_if(m_line.begin(), m_line.end(), isSame);
    if (found == m_line.end()) {
        m_line.push_back(std::make_shared<Recording>(Recording{.samples = std::move(samples)}));
        found = std::prev(m_line.end());
    }
    ++(*found)->clients;
    return *found;
}

bool RecognitionDesk::isNext(const Entry& entry) const {
    return entry->stage == Stage::Waiting && m_line.front() == entry;
}

void RecognitionDesk::decode(const Entry& entry, std::unique_lock<std::mutex>& lock) {
    entry->stage = Stage::Decoding;
    lock.unlock();
    std::string transcript;
    try {
        transcript = m_recognise(entry->samples);
    } catch (...) {
        lock.lock();
        entry->stage = Stage::Waiting;
        leave(entry);
        throw;
    }
    lock.lock();
    entry->transcript = std::move(transcript);
    entry->stage = Stage::Finished;
    m_line.pop_front();
    m_last = entry;
    m_changed.notify_all();
}

void RecognitionDesk::leave(const Entry& entry) {
    --entry->clients;
    if (entry->clients == 0 && entry->stage == Stage::Waiting)
        std::erase(m_line, entry);
    m_changed.notify_all();
}

}  // namespace sayloft::helper
