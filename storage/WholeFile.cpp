// SPDX-License-Identifier: MIT
#include "storage/WholeFile.h"

#include "storage/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace sayloft {

std::optional<QByteArray> readWholeFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return std::nullopt;
    return content;
}

bool writeWholeFile(const QString& path, const QByteArray& content) {
    makePrivateFolder(QFileInfo(path).path());
    QFile file(path);
    // Unbuffered: the file is cut off for no longer than a write takes.
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered,
                     ownersAlone) &&
           file.write(content) == content.size();
}

// Not through QFile, which moves over no other file.
bool moveFile(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

}  // namespace sayloft
