// SPDX-License-Identifier: MIT
#include "platform/linux/PulseDevices.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace sayloft {
namespace {

std::string_view property(const pa_source_info& info, const char* key) {
    const char* value = pa_proplist_gets(info.proplist, key);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

// Sound cards on the mainboard rarely carry a form factor: there the bus has to do.
bool isBuiltIn(const pa_source_info& info) {
    if (property(info, PA_PROP_DEVICE_FORM_FACTOR) == "internal")
        return true;
    return property(info, PA_PROP_DEVICE_BUS) == "pci" &&
           property(info, PA_PROP_DEVICE_API) == "alsa" &&
           property(info, PA_PROP_DEVICE_CLASS) == "sound";
}

std::uint32_t transportOf(const pa_source_info& info) {
    const std::string_view bus = property(info, PA_PROP_DEVICE_BUS);
    if (isBuiltIn(info))
        return fourCharCode("bltn");
    if (bus == "usb")
        return fourCharCode("usb ");
    if (bus == "bluetooth")
        return fourCharCode("blue");
    return 0;
}

PulseSource sourceOf(const pa_source_info& info) {
    return {.id = info.index,
            .name = info.name,
            .description = QString::fromUtf8(info.description),
            .transport = transportOf(info),
            .isMonitor = info.monitor_of_sink != PA_INVALID_INDEX,
            .format = info.sample_spec,
            .channels = info.channel_map};
}

template <typename Matches>
std::optional<PulseSource> firstOf(const std::vector<PulseSource>& sources, Matches matches) {
    const auto found = std::find_if(sources.begin(), sources.end(), matches);
    return found == sources.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

void PulseDevices::connected(pa_context* context) {
    m_refreshing = false;
    m_refreshAgain = false;
    pa_context_set_subscribe_callback(context, &PulseDevices::onEvent, this);
    const auto wanted = static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE |
                                                            PA_SUBSCRIPTION_MASK_SERVER);
    const PulseOperation subscribe(pa_context_subscribe(context, wanted, nullptr, nullptr));
    refresh(context);
}

void PulseDevices::disconnected() {
    const std::lock_guard lock(m_mutex);
    m_sources.clear();
    m_defaultName.clear();
    answered();
}

void PulseDevices::onEvent(pa_context* context, pa_subscription_event_type_t /*type*/,
                           uint32_t /*index*/, void* self) {
    static_cast<PulseDevices*>(self)->refresh(context);
}

// Everything is asked for again: there are a handful of sources, and events are rare. Events that
// come during a question lead to one more.
void PulseDevices::refresh(pa_context* context) {
    if (m_refreshing) {
        m_refreshAgain = true;
        return;
    }
    m_arriving.clear();
    const PulseOperation server(pa_context_get_server_info(context, &PulseDevices::onServer, this));
    const PulseOperation list(
        pa_context_get_source_info_list(context, &PulseDevices::onSource, this));
    m_refreshing = list != nullptr;
}

void PulseDevices::onServer(pa_context* /*context*/, const pa_server_info* info, void* self) {
    auto* devices = static_cast<PulseDevices*>(self);
    const std::lock_guard lock(devices->m_mutex);
    const bool named = info != nullptr && info->default_source_name != nullptr;
    devices->m_defaultName = named ? info->default_source_name : "";
}

void PulseDevices::onSource(pa_context* context, const pa_source_info* info, int end, void* self) {
    auto* devices = static_cast<PulseDevices*>(self);
    if (end == 0)
        devices->m_arriving.push_back(sourceOf(*info));
    else
        devices->listed(context);
}

void PulseDevices::listed(pa_context* context) {
    {
        const std::lock_guard lock(m_mutex);
        m_sources = std::exchange(m_arriving, {});
        answered();
    }
    m_refreshing = false;
    if (std::exchange(m_refreshAgain, false))
        refresh(context);
}

void PulseDevices::answered() {
    if (!std::exchange(m_answered, true))
        m_firstAnswer.release();
}

void PulseDevices::waitForFirstAnswer() const {
    {
        const std::lock_guard lock(m_mutex);
        if (m_answered || m_patience <= m_patience.zero())
            return;
    }
    const auto begin = std::chrono::steady_clock::now();
    static_cast<void>(m_firstAnswer.try_acquire_for(m_patience));
    m_patience -= std::chrono::steady_clock::now() - begin;
}

std::vector<PulseSource> PulseDevices::sources() const {
    waitForFirstAnswer();
    const std::lock_guard lock(m_mutex);
    return m_sources;
}

std::optional<PulseSource> PulseDevices::source(AudioDeviceId id) const {
    waitForFirstAnswer();
    const std::lock_guard lock(m_mutex);
    return firstOf(m_sources, [id](const PulseSource& source) { return source.id == id; });
}

std::optional<PulseSource> PulseDevices::defaultSource() const {
    waitForFirstAnswer();
    const std::lock_guard lock(m_mutex);
    return firstOf(m_sources,
                   [this](const PulseSource& source) { return source.name == m_defaultName; });
}

bool PulseDevices::isMonitor(const std::string& name) const {
    const std::lock_guard lock(m_mutex);
    const auto known =
        firstOf(m_sources, [&name](const PulseSource& source) { return source.name == name; });
    // A source so new that it is not in the picture yet: servers name monitors after their sinks.
    return known ? known->isMonitor : std::string_view(name).ends_with(".monitor");
}

}  // namespace sayloft
