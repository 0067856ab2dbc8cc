// SPDX-License-Identifier: MIT
#include "models/DiskSync.h"

#include <cerrno>
#include <mutex>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace sayloft {

/// What the thread may touch however long it takes.
struct DiskSync::Listener {
    std::mutex mutex;
    DiskSync* sync;  ///< null once it is gone
};

DiskSync::DiskSync(int file, Done onDone, QObject* parent)
    : QObject(parent), m_onDone(std::move(onDone)), m_listener(std::make_shared<Listener>()) {
    m_listener->sync = this;
    std::thread([file = ::fcntl(file, F_DUPFD_CLOEXEC, 0), listener = m_listener] {
        const int error = ::fsync(file) == 0 ? 0 : errno;
        ::close(file);
        const std::lock_guard lock(listener->mutex);
        if (DiskSync* sync = listener->sync)
            QMetaObject::invokeMethod(
                sync, [sync, error] { sync->done(error); }, Qt::QueuedConnection);
    }).detach();
}

DiskSync::~DiskSync() {
    const std::lock_guard lock(m_listener->mutex);
    m_listener->sync = nullptr;
}

void DiskSync::done(int error) const {
    m_onDone(error);
}

}  // namespace sayloft
