// SPDX-License-Identifier: MIT
#include "models/DeadDownloads.h"

#include "models/PartialFile.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace sayloft {
namespace {

bool canGoOn(const QString& destination, const QStringList& wanted) {
    const PartialFile part(destination);
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-resumableFor.count());
    return wanted.contains(QFileInfo(destination).fileName()) && part.note() &&
           QFileInfo(part.path()).lastModified() >= oldest;
}

}  // namespace

QStringList deadDownloads(const QString& directory, const QStringList& wanted) {
    QStringList dead;
    for (const QString& ending : {PartialFile::suffix, PartialFile::noteSuffix}) {
        for (const QFileInfo& file : QDir(directory).entryInfoList({QLatin1Char('*') + ending},
                                                                   QDir::Files | QDir::Hidden)) {
            const QString path = file.filePath();
            if (!canGoOn(path.chopped(ending.size()), wanted))
                dead.append(path);
        }
    }
    return dead;
}

}  // namespace sayloft
