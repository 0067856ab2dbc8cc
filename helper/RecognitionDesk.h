// SPDX-License-Identifier: MIT
#pragma once

#include "helper/WavUpload.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace sayloft::helper {

/// Hands recordings to the recogniser one by one, in the order they came, and each only once: who
/// asks for a recording that is in line or being decoded waits for that result, and who asks again
/// for the last one gets it at once. A client that gives up and comes back thereby loses nothing of
/// the time already spent on its recording. The last recording stays in memory for that, nowhere
/// else.
class RecognitionDesk {
public:
    /// Never called twice at a time, but on any of the threads that call `transcribe`.
    using Recognise = std::function<std::string(const Samples&)>;
    /// Asked now and then while a client has to wait.
    using ClientIsThere = std::function<bool()>;

    explicit RecognitionDesk(Recognise recognise);

    /// The transcript; none when the client left while it waited. A recording that has lost all its
    /// clients leaves the line; once begun, decoding goes on to its end, as the client may come
    /// back. Any thread. Throws what the recogniser throws on the calling thread; others that wait
    /// for the same recording then try it themselves.
    [[nodiscard]] std::optional<std::string> transcribe(Samples samples,
                                                        const ClientIsThere& clientIsThere);

private:
    enum class Stage { Waiting, Decoding, Finished };

    struct Recording {
        Samples samples;  ///< never changes
        std::string transcript = {};
        Stage stage = Stage::Waiting;
        int clients = 0;
    };
    using Entry = std::shared_ptr<Recording>;

    // All of these are called with m_mutex held; `decode` gives it up meanwhile.
    [[nodiscard]] Entry enter(Samples samples);
    [[nodiscard]] bool isNext(const Entry& entry) const;
    void decode(const Entry& entry, std::unique_lock<std::mutex>& lock);
    void leave(const Entry& entry);

    Recognise m_recognise;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Entry> m_line;  ///< guarded by m_mutex; only the first is ever being decoded
    Entry m_last;              ///< guarded by m_mutex; finished, empty at first
};

}  // namespace sayloft::helper
