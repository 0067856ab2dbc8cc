// SPDX-License-Identifier: MIT
#include "models/DeadDownloads.h"

#include "models/PartialFile.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace sayloft {
namespace {

QFileInfoList filesIn(const QString& directory, const QString& pattern) {
    return QDir(directory).entryInfoList({pattern}, QDir::Files | QDir::Hidden);
}

bool canGoOn(const QString& destination, const WantedFiles& wanted) {
    const PartialFile part(destination);
    const QString file = QFileInfo(destination).fileName();
    const auto days = file == wanted.chosen ? resumableFor : resumableForOthers;
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-days.count());
    return wanted.offered.contains(file) && part.note() &&
           QFileInfo(part.path()).lastModified() >= oldest;
}

}  // namespace

QStringList deadDownloads(const QString& directory, const WantedFiles& wanted) {
    QStringList dead;
    for (const QString& ending : {PartialFile::suffix, PartialFile::noteSuffix}) {
        for (const QFileInfo& file : filesIn(directory, QLatin1Char('*') + ending)) {
            const QString path = file.filePath();
            if (!canGoOn(path.chopped(ending.size()), wanted))
                dead.append(path);
        }
    }
    // A note has such a name until it is complete.
    for (const QFileInfo& file :
         filesIn(directory, QLatin1Char('*') + PartialFile::noteSuffix + QStringLiteral(".*")))
        dead.append(file.filePath());
    return dead;
}

}  // namespace sayloft
