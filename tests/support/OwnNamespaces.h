// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace sayloft::test {

/// Puts the test, and all that it starts from here on, where there is no network but a loopback of
/// its own, and nobody to ask for names. Throws std::runtime_error when the system does not allow
/// that, as all of these do.
void leaveTheNetwork();

/// A file system of its own for this test and what it starts: a folder in memory.
class SmallDisk {
public:
    /// `options` are what mount takes for a tmpfs, "size=2m" for example.
    SmallDisk(const QString& folder, const QByteArray& options);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    void makeReadOnly();
    void makeWritable();
    /// Not a byte more finds room.
    void fill();
    /// Ends that.
    void makeRoom();

private:
    QByteArray m_folder;
    bool m_isReadOnly = false;
};

}  // namespace sayloft::test
