// SPDX-License-Identifier: MIT
#include "models/Paths.h"

#include "storage/PrivateFolder.h"

#include <QDir>
#include <QFileInfo>

namespace sayloft {

QString BUNDLE_DIR;
QString ROOT_DIR;
QString DATA_DIR;
QString DOWNLOAD_MODELS_DIR;
QStringList MODEL_SEARCH_DIRS;
QString PARAKEET_SERVER_BIN;
QString LOG_URL;
QString TEMP_DIR;

namespace {

QString serverBinary() {
    QString bundled = BUNDLE_DIR + QStringLiteral("/Contents/Helpers/parakeet-server");
    if (QFileInfo::exists(bundled))
        return bundled;
    return ROOT_DIR + QStringLiteral("/parakeet.cpp/build/examples/server/parakeet-server");
}

}  // namespace

void fixPaths(const QString& bundleDir, const QString& homeDir) {
    BUNDLE_DIR = QDir::cleanPath(bundleDir);
    ROOT_DIR = QFileInfo(BUNDLE_DIR).path();
    DATA_DIR = QDir::cleanPath(homeDir) + QStringLiteral("/.sayloft");
    DOWNLOAD_MODELS_DIR = DATA_DIR + QStringLiteral("/models");
    MODEL_SEARCH_DIRS = {DOWNLOAD_MODELS_DIR,
                         BUNDLE_DIR + QStringLiteral("/Contents/Resources/models"),
                         ROOT_DIR + QStringLiteral("/models")};
    PARAKEET_SERVER_BIN = serverBinary();
    LOG_URL = DATA_DIR + QStringLiteral("/sayloft.log");
    TEMP_DIR = DATA_DIR + QStringLiteral("/tmp");
}

QString bundleDirOfExecutable(const QString& executableDir) {
    return QDir::cleanPath(executableDir + QStringLiteral("/../.."));
}

void ensureDataDir() {
    makePrivateFolder(DATA_DIR);
}

}  // namespace sayloft
