// SPDX-License-Identifier: MIT
#include "audio/FailedRecording.h"

#include "models/Paths.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace sayloft {
namespace {
constexpr qint64 headerSize = 44;
}

QString FailedRecording::file() {
    return DATA_DIR + QStringLiteral("/last-failed.wav");
}

bool FailedRecording::isKept() {
    return QFileInfo::exists(file());
}

void FailedRecording::keep(const QString& recording) {
    // Moved and not copied: that works on a disk without room too, and is whole at every instant.
    if (QFileInfo(recording).size() > headerSize)
        static_cast<void>(std::rename(QFile::encodeName(recording).constData(),
                                      QFile::encodeName(file()).constData()));
}

void FailedRecording::forget() {
    QFile::remove(file());
}

}  // namespace sayloft
