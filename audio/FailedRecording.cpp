// SPDX-License-Identifier: MIT
#include "audio/FailedRecording.h"

#include "models/Paths.h"
#include "storage/Log.h"
#include "storage/PrivateFolder.h"
#include "storage/WholeFile.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <mutex>

namespace sayloft {
namespace {

constexpr qint64 headerSize = 44;
const QString partSuffix = QStringLiteral(".part");

bool move(const QString& from, const QString& to) {
    if (!moveFile(from, to))
        return false;
    // For the next recording: there may be no room for a new file by then.
    static_cast<void>(QFile(from).open(QIODevice::NewOnly, ownersAlone));
    return true;
}

/// One that was kept in memory, for want of room, may find some now.
bool copy(const QString& from, const QString& to) {
    const QString part = to + partSuffix;
    const auto sound = readWholeFile(from);
    const bool isCopied = sound && writeWholeFile(part, *sound) && moveFile(part, to);
    const int reason = errno;
    if (!isCopied)
        QFile::remove(part);
    errno = reason;
    return isCopied;
}

std::mutex mutex;
std::uint64_t keptDictation = 0;  // guarded by mutex; 0: an earlier run's, or none

}  // namespace

QString FailedRecording::file() {
    return DATA_DIR + QStringLiteral("/last-failed.wav");
}

bool FailedRecording::isKept() {
    return QFileInfo::exists(file());
}

void FailedRecording::keep(const QString& recording, std::uint64_t dictation) {
    if (QFileInfo(recording).size() <= headerSize)
        return;
    const std::lock_guard lock(mutex);
    if (dictation < keptDictation)
        return;
    // Moved and not copied: that works on a disk without room too, and is whole at every instant.
    if (move(recording, file()) || (errno == EXDEV && copy(recording, file())))
        keptDictation = dictation;
    else
        logf(QStringLiteral("the recording could not be kept: ") + qt_error_string());
}

void FailedRecording::forgetBefore(std::uint64_t dictation) {
    const std::lock_guard lock(mutex);
    if (keptDictation < dictation)
        QFile::remove(file());
}

void FailedRecording::removeLeftover() {
    QFile::remove(file() + partSuffix);
}

}  // namespace sayloft
