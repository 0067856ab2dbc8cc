// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <memory>
#include <mutex>
#include <set>
#include <utility>

namespace sayloft {

/// Hands out the file names that recordings are written to, none to two recordings at a time: the
/// main file when it is free, otherwise a sibling ("sayloft_rec-2.wav", ...). Any thread.
class RecordingFiles : public std::enable_shared_from_this<RecordingFiles> {
public:
    /// A name that belongs to its holder. Giving it back removes a sibling from the disk; the main
    /// file stays.
    class Lease {
    public:
        Lease(std::shared_ptr<RecordingFiles> files, int number, QString path);
        ~Lease();
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;

        [[nodiscard]] const QString& path() const { return m_path; }

    private:
        std::shared_ptr<RecordingFiles> m_files;
        int m_number;
        QString m_path;
    };

    /// `mainFile` is an absolute path that ends in ".wav".
    explicit RecordingFiles(QString mainFile) : m_mainFile(std::move(mainFile)) {}

    [[nodiscard]] const QString& mainFile() const { return m_mainFile; }
    [[nodiscard]] std::unique_ptr<Lease> lease();
    /// Removes siblings that a crash has left behind, but none that is in use here.
    void removeStaleSiblings();

private:
    [[nodiscard]] QString path(int number) const;

    const QString m_mainFile;
    std::mutex m_mutex;
    std::set<int> m_leased;
};

}  // namespace sayloft
