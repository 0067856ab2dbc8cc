// SPDX-License-Identifier: MIT
#include "bench/TrayWatcher.h"

#include "tests/support/WaitUntil.h"

#include <stdexcept>
#include <utility>

namespace sayloft::bench {

TrayWatcher::TrayWatcher(const QString& busAddress)
    : m_bus(QDBusConnection::connectToBus(busAddress, QStringLiteral("tray watcher"))) {
    m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                         QDBusConnection::ExportScriptableContents);
    if (!m_bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher")))
        throw std::runtime_error("there is another tray");
}

std::optional<TrayWatcher::Clock::time_point> TrayWatcher::waitForItem() {
    m_registered.reset();
    static_cast<void>(
        test::waitUntil([this] { return m_registered.has_value(); }, std::chrono::seconds(20)));
    return std::exchange(m_registered, std::nullopt);
}

void TrayWatcher::RegisterStatusNotifierItem(const QString& item) {
    if (!m_registered)
        m_registered = Clock::now();
    Q_EMIT StatusNotifierItemRegistered(item);
}

void TrayWatcher::RegisterStatusNotifierHost(const QString& /*host*/) {}

}  // namespace sayloft::bench
