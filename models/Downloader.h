// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QString>
#include <QThread>
#include <QUrl>

#include <chrono>
#include <functional>

namespace sayloft {

/// Downloads large files without the main thread ever waiting for the network or the disk. One at a
/// time. Main thread.
class Downloader : public QObject {
public:
    /// A host that sends nothing for `stall` has failed.
    explicit Downloader(std::chrono::milliseconds stall = std::chrono::seconds(60));

    ~Downloader() override;
    Downloader(const Downloader&) = delete;
    Downloader& operator=(const Downloader&) = delete;

    /// Returns at once. The destination is replaced in one step when the whole file has arrived and
    /// is untouched otherwise. Over HTTPS, except from this machine.
    void download(const QUrl& url, const QString& destination);

    /// Removes files, slow as that may be for large ones, before any later download begins. Those
    /// that `stop` comes before stay.
    void remove(const QStringList& files);

    /// Gives up a running download, promptly; what has arrived is kept if the host can continue
    /// from it. Nothing may be asked for afterwards.
    void stop();

    /// From 0 to 1, exactly 1 at last, at most ten times a second. Never where the host does not
    /// say how large the file is.
    std::function<void(double)> onProgress;

    /// True for success. Once per download, on a later turn of the main loop.
    std::function<void(bool)> onDone;

private:
    const std::chrono::milliseconds m_stall;
    QThread m_thread;
    QObject* m_desk;  ///< lives on the thread and ends with it, and the transfers with it
};

}  // namespace sayloft
