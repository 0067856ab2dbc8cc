// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <memory>

namespace sayloft {

/// Waits until everything written to a file has reached the disk, which can take as long as the
/// disk likes. Nobody has to: once this is destroyed, nothing more is heard of it.
class DiskSync : public QObject {
public:
    /// What stands in errno; 0 for success.
    using Done = std::function<void(int error)>;

    /// `onDone` is called once, on a later turn of this thread's event loop. The file may be closed
    /// in between.
    DiskSync(int file, Done onDone, QObject* parent);
    ~DiskSync() override;
    DiskSync(const DiskSync&) = delete;
    DiskSync& operator=(const DiskSync&) = delete;

private:
    struct Listener;

    void done(int error) const;

    const Done m_onDone;
    const std::shared_ptr<Listener> m_listener;
};

}  // namespace sayloft
