// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioInput.h"
#include "platform/linux/PulseHandles.h"

#include <chrono>
#include <mutex>
#include <optional>
#include <semaphore>
#include <string>
#include <vector>

namespace sayloft {

/// A source of the sound server as the picture of the devices holds it.
struct PulseSource {
    AudioDeviceId id = 0;  ///< the server's index
    std::string name;
    QString description;
    std::uint32_t transport = 0;
    bool isMonitor = false;  ///< hears what a sink plays: no input
    pa_sample_spec format{};
    pa_channel_map channels{};
};

/// A picture of the sound server's sources that its events keep up to date.
class PulseDevices {
public:
    PulseDevices() = default;
    PulseDevices(const PulseDevices&) = delete;
    PulseDevices& operator=(const PulseDevices&) = delete;

    // The connection's thread.
    /// The context has to end before this object does.
    void connected(pa_context* context);
    void disconnected();

    // The main thread. Calls that come before any answer of the server wait for one, 100 ms in all
    // at most.
    [[nodiscard]] std::vector<PulseSource> sources() const;
    [[nodiscard]] std::optional<PulseSource> source(AudioDeviceId id) const;
    [[nodiscard]] std::optional<PulseSource> defaultSource() const;

    /// Whether a source of this name hears a sink instead of a room. Never waits; any thread.
    [[nodiscard]] bool isMonitor(const std::string& name) const;

private:
    static void onEvent(pa_context* context, pa_subscription_event_type_t type, uint32_t index,
                        void* self);
    static void onServer(pa_context* context, const pa_server_info* info, void* self);
    static void onSource(pa_context* context, const pa_source_info* info, int end, void* self);

    void refresh(pa_context* context);
    void listed(pa_context* context);
    void answered();
    void waitForFirstAnswer() const;

    // The connection's thread only.
    bool m_refreshing = false;
    bool m_refreshAgain = false;
    std::vector<PulseSource> m_arriving;

    // The main thread only.
    mutable std::chrono::steady_clock::duration m_patience = std::chrono::milliseconds(100);

    mutable std::binary_semaphore m_firstAnswer{0};
    mutable std::mutex m_mutex;
    // Protected by the mutex.
    bool m_answered = false;
    std::vector<PulseSource> m_sources;
    std::string m_defaultName;
};

}  // namespace sayloft
