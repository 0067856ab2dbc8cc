// SPDX-License-Identifier: MIT
#include "audio/FailedRecording.h"

#include "models/Paths.h"
#include "storage/Log.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <mutex>

namespace sayloft {
namespace {

constexpr qint64 headerSize = 44;

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
    const int result = std::rename(QFile::encodeName(recording).constData(),
                                   QFile::encodeName(file()).constData());
    if (result == 0)
        keptDictation = dictation;
    else
        logf(QStringLiteral("the recording could not be kept: ") + qt_error_string());
}

void FailedRecording::forgetBefore(std::uint64_t dictation) {
    const std::lock_guard lock(mutex);
    if (keptDictation < dictation)
        QFile::remove(file());
}

}  // namespace sayloft
