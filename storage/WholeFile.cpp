// SPDX-License-Identifier: MIT
#include "storage/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

void writeWholeFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(content);
}

}  // namespace sayloft
