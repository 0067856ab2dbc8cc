// SPDX-License-Identifier: MIT
// Downloads one file as the application does and ends with 0 when that succeeded. The log goes into
// the home directory that HOME names.
// Usage: download_once <url> <destination>
#include "models/Downloader.h"
#include "models/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QUrl>

int main(int argc, char** argv) {
    using namespace sayloft;

    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    fixPaths(QCoreApplication::applicationDirPath(), QDir::homePath());
    Downloader downloader;
    downloader.onDone = [](bool succeeded) { QCoreApplication::exit(succeeded ? 0 : 1); };
    downloader.download(QUrl(arguments[1]), arguments[2]);
    return QCoreApplication::exec();
}
