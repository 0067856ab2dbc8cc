// SPDX-License-Identifier: MIT
#include "models/FilesAside.h"

#include "storage/WholeFile.h"

#include <QDir>
#include <QFileInfo>

namespace sayloft {
namespace {

QString suffix() {
    return QStringLiteral(".sayloft-deleted");
}

}  // namespace

std::optional<QString> putAside(const QString& path) {
    QString aside = path + suffix();
    if (!moveFile(path, aside))
        return std::nullopt;
    return aside;
}

QStringList filesAside(const QStringList& directories) {
    QStringList files;
    for (const QString& directory : directories) {
        for (const QFileInfo& file : QDir(directory).entryInfoList(
                 {QLatin1Char('*') + suffix()}, QDir::Files | QDir::Hidden | QDir::System))
            files.append(file.filePath());
    }
    return files;
}

}  // namespace sayloft
