// SPDX-License-Identifier: MIT
#include "models/FilesAside.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace sayloft {
namespace {

QString suffix() {
    return QStringLiteral(".sayloft-deleted");
}

}  // namespace

std::optional<QString> putAside(const QString& path) {
    QString aside = path + suffix();
    // Not through QFile, which renames over no file that is left from before.
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(aside).constData()) != 0)
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
