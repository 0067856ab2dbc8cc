// SPDX-License-Identifier: MIT
#include "models/PartialFile.h"

#include "storage/PrivateFolder.h"
#include "storage/WholeFile.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace sayloft {

// Not one of the endings that web browsers use for theirs.
const QString PartialFile::suffix = QStringLiteral(".sayloft-part");
const QString PartialFile::noteSuffix = QStringLiteral(".sayloft-part.json");

PartialFile::PartialFile(const QString& destination)
    : m_destination(destination), m_file(destination + suffix) {}

std::optional<ResumeNote> PartialFile::note() const {
    return QFileInfo(path()).size() > 0 ? ResumeNote::load(notePath()) : std::nullopt;
}

qint64 PartialFile::freeSpace() const {
    return QStorageInfo(QFileInfo(path()).path()).bytesAvailable();
}

bool PartialFile::startAnew() {
    m_file.close();
    makePrivateFolder(QFileInfo(path()).path());
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered,
                     ownersAlone))
        return failed(m_file.errorString());
    // Only now, so that no note ever stands for bytes that it does not describe.
    QFile::remove(notePath());
    return true;
}

bool PartialFile::continueAt(qint64 offset) {
    m_file.close();
    const auto append = QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered;
    if (!m_file.open(append | QIODevice::ExistingOnly) || !m_file.resize(offset))
        return failed(m_file.errorString());
    return true;
}

bool PartialFile::append(QByteArrayView bytes) {
    // Not through QFile, which forgets the reason when a part of the bytes still found room.
    while (!bytes.isEmpty()) {
        const ssize_t count =
            ::write(m_file.handle(), bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (count < 0 && errno != EINTR)
            return failed(qt_error_string(errno));
        bytes = bytes.sliced(std::max<ssize_t>(count, 0));
    }
    return true;
}

bool PartialFile::putInPlace() {
    m_file.close();
    if (!moveFile(path(), m_destination))
        return failed(qt_error_string(errno));
    QFile::remove(notePath());
    return true;
}

void PartialFile::keepFor(const ResumeNote& note) {
    note.save(notePath());
}

void PartialFile::remove() {
    m_file.close();
    m_file.remove();
    QFile::remove(notePath());
}

void PartialFile::leave() {
    m_file.close();
    if (!note())
        remove();
}

bool PartialFile::failed(const QString& error) {
    m_error = error;
    return false;
}

QString PartialFile::notePath() const {
    return m_destination + noteSuffix;
}

}  // namespace sayloft
