// SPDX-License-Identifier: MIT
#include "tests/support/TempHome.h"

#include "models/Paths.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace sayloft::test {

TempHome::TempHome() {
    QDir().mkpath(path());
    QDir().mkpath(bundleDir() + QStringLiteral("/Contents/Helpers"));
    fixPaths(bundleDir(), path());
}

QString TempHome::path() const {
    return m_directory.filePath(QStringLiteral("home"));
}

QString TempHome::bundleDir() const {
    return m_directory.filePath(QStringLiteral("apps/Sayloft.app"));
}

QString TempHome::log() const {
    return QString::fromUtf8(readFile(LOG_URL));
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& content) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

void makeOlder(const QString& path, int days) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite)) << path.toStdString();
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addDays(-days),
                                 QFileDevice::FileModificationTime));
}

}  // namespace sayloft::test
