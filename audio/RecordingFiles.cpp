// SPDX-License-Identifier: MIT
#include "audio/RecordingFiles.h"

#include <QFile>

#include <utility>

namespace sayloft {

namespace {
constexpr int mainNumber = 1;
}

RecordingFiles::Lease::Lease(std::shared_ptr<RecordingFiles> files, int number, QString path)
    : m_files(std::move(files)), m_number(number), m_path(std::move(path)) {}

RecordingFiles::Lease::~Lease() {
    // Within the lock: nobody may be given the name before the file is gone.
    const std::lock_guard lock(m_files->m_mutex);
    if (m_number != mainNumber)
        QFile::remove(m_path);
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

QString RecordingFiles::path(int number) const {
    if (number == mainNumber)
        return m_mainFile;
    const QString extension = QStringLiteral(".wav");
    return m_mainFile.chopped(extension.size()) + QStringLiteral("-%1").arg(number) + extension;
}

}  // namespace sayloft
