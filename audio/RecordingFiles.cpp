// SPDX-License-Identifier: MIT
#include "audio/RecordingFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace sayloft {

namespace {
constexpr int mainNumber = 1;
}

RecordingFiles::Lease::Lease(std::shared_ptr<RecordingFiles> files, int number, QString path)
    : m_files(std::move(files)), m_number(number), m_path(std::move(path)) {}

RecordingFiles::Lease::~Lease() {
    // First: nobody may be given the name before the file is gone. Not within the lock, for which
    // the next recording would wait if the disk stalled.
    if (m_number != mainNumber)
        QFile::remove(m_path);
    const std::lock_guard lock(m_files->m_mutex);
    m_files->m_leased.erase(m_number);
}

std::unique_ptr<RecordingFiles::Lease> RecordingFiles::lease() {
    const std::lock_guard lock(m_mutex);
    int number = mainNumber;
    while (m_leased.contains(number))
        ++number;
    m_leased.insert(number);
    return std::make_unique<Lease>(shared_from_this(), number, path(number));
}

void RecordingFiles::removeStaleSiblings() {
    const std::lock_guard lock(m_mutex);
    const QFileInfo main(m_mainFile);
    const QString prefix = main.completeBaseName() + QLatin1Char('-');
    const QStringList names = main.dir().entryList({prefix + QStringLiteral("*.wav")}, QDir::Files);
    for (const QString& name : names) {
        const int number = name.mid(prefix.size()).chopped(4).toInt();
        // Only what `path` makes: the number is spelt as it spells it.
        const QString sibling = path(number);
        if (number > mainNumber && QFileInfo(sibling).fileName() == name &&
            !m_leased.contains(number))
            QFile::remove(sibling);
    }
}

QString RecordingFiles::path(int number) const {
    if (number == mainNumber)
        return m_mainFile;
    const QString extension = QStringLiteral(".wav");
    return m_mainFile.chopped(extension.size()) + QStringLiteral("-%1").arg(number) + extension;
}

}  // namespace sayloft
