// SPDX-License-Identifier: MIT
#include "fuzz/support/DataFolder.h"

#include "models/Paths.h"
#include "storage/StoredFiles.h"
#include "storage/WholeFile.h"

#include <QDir>
#include <QStorageInfo>

#include <chrono>

namespace sayloft::fuzz {
namespace {

constexpr char recordSeparator = '\x1e';

QString placeForFolders() {
    const QString memory = QStringLiteral("/dev/shm");
    return QStorageInfo(memory).fileSystemType() == "tmpfs" ? memory : QDir::tempPath();
}

bool isPutAside(const QByteArray& text, const QString& path) {
    for (const char* suffix : {".broken", ".broken-2"}) {
        if (readWholeFile(path + QLatin1String(suffix)) == text)
            return true;
    }
    return false;
}

}  // namespace

DataFolder::DataFolder() : m_home(placeForFolders() + QStringLiteral("/sayloft-fuzz-XXXXXX")) {
    require(m_home.isValid());
    fixPaths(m_home.path(), m_home.path());
}

void DataFolder::fill(const QString& path, const FuzzInput& input) const {
    require(QDir(DATA_DIR).removeRecursively());
    std::string_view rest = input.rest();
    for (const char* suffix : {"", ".new", ".saved", ".broken"}) {
        const std::size_t end = rest.find(recordSeparator);
        require(writeWholeFile(path + QLatin1String(suffix), byteArray(rest.substr(0, end))));
        if (end == std::string_view::npos)
            return;
        rest.remove_prefix(end + 1);
    }
}

void start(const KeptFile& file, const QString& path) {
    const KeptFile::Content before = file.read();
    static_cast<void>(mendStoredFiles());
    if (before.source == KeptFile::Source::broken) {
        require(before.text->isEmpty() || isPutAside(*before.text, path));
        return;
    }
    const KeptFile::Content after = file.read();
    require(after.source == KeptFile::Source::file && after.text == before.text);
}

void waitForDisk() {
    KeptFile::waitForDisk(std::chrono::seconds(5));
}

}  // namespace sayloft::fuzz
