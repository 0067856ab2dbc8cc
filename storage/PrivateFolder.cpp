// SPDX-License-Identifier: MIT
#include "storage/PrivateFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <sys/stat.h>

namespace sayloft {
namespace {

constexpr mode_t allRights = S_IRWXU | S_IRWXG | S_IRWXO;

/// Takes all other rights away; none is given.
void leaveOnly(mode_t rights, const QFileInfo& file) {
    const QByteArray path = QFile::encodeName(file.filePath());
    struct stat status {};
    if (::stat(path.constData(), &status) == 0 && (status.st_mode & allRights & ~rights) != 0)
        static_cast<void>(::chmod(path.constData(), status.st_mode & rights));
}

}  // namespace

void makePrivateFolder(const QString& path) {
    const QDir folder(path);
    if (folder.exists() || folder.isRoot())
        return;
    makePrivateFolder(QFileInfo(folder.absolutePath()).path());
    QDir().mkdir(folder.absolutePath(), ownersAlone | QFile::ExeOwner);
}

void closeToOthers(const QString& folder, const QString& shared) {
    if (!QFileInfo(folder).isDir())
        return;
    leaveOnly(S_IRWXU, QFileInfo(folder));
    QDirIterator entries(folder,
                         QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        const QFileInfo entry = entries.fileInfo();
        if (entry.isSymLink())
            continue;
        if (entry.isDir())
            leaveOnly(S_IRWXU, entry);
        else if (entry.isFile() && !entry.filePath().startsWith(shared + QLatin1Char('/')))
            leaveOnly(S_IRUSR | S_IWUSR, entry);
    }
}

}  // namespace sayloft
