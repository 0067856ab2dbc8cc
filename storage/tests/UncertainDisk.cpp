// SPDX-License-Identifier: MIT
#include "storage/tests/UncertainDisk.h"

#include "tests/support/TempHome.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace sayloft::test {

UncertainDisk::UncertainDisk(const QString& path) : m_path(path) {
    const QDir folder = QFileInfo(path).dir();
    const QStringList names = folder.entryList({QFileInfo(path).fileName() + QLatin1Char('*')},
                                               QDir::Files | QDir::Hidden);
    for (const QString& name : names) {
        m_names[folder.filePath(name)] = m_files.size();
        m_files.push_back({{{0, readFile(folder.filePath(name))}}});
    }
    m_namesOnDisk = m_names;
}

void UncertainDisk::apply(const TracedCall& call) {
    using Step = void (UncertainDisk::*)(const TracedCall&);
    static const std::map<QString, Step> steps{
        {QStringLiteral("openat"), &UncertainDisk::open},
        {QStringLiteral("close"), &UncertainDisk::close},
        {QStringLiteral("write"), &UncertainDisk::write},
        {QStringLiteral("pwrite64"), &UncertainDisk::write},
        {QStringLiteral("ftruncate"), &UncertainDisk::truncate},
        {QStringLiteral("rename"), &UncertainDisk::rename},
        {QStringLiteral("link"), &UncertainDisk::link},
        {QStringLiteral("unlink"), &UncertainDisk::unlink},
        {QStringLiteral("fsync"), &UncertainDisk::synchronise},
        {QStringLiteral("fdatasync"), &UncertainDisk::synchronise}};
    const auto step = steps.find(call.name);
    if (call.result >= 0) {
        if (step == steps.end())
            throw std::runtime_error("what is " + call.name.toStdString() + '?');
        (this->*step->second)(call);
    }
    ++m_calls;
}

std::map<QString, QByteArray> UncertainDisk::now() const {
    std::map<QString, QByteArray> folder;
    for (const auto& [path, file] : m_names)
        folder[path] = m_files[file].versions.back().text;
    return folder;
}

std::vector<UncertainDisk::Folder> UncertainDisk::afterPowerCut() {
    std::vector<Folder> folders;
    Names names = m_namesOnDisk;
    addFolders(names, folders);
    for (const Renaming& renaming : m_renamings) {
        carryOut(renaming, names);
        addFolders(names, folders);
    }
    return folders;
}

void UncertainDisk::open(const TracedCall& call) {
    const QString path = QString::fromUtf8(call.arguments.at(0).text);
    const QString& flags = call.arguments.at(1).word;
    Opened& opened = m_opened[QString::number(call.result)];
    opened = {.call = m_calls,
              .isFolder = path == QFileInfo(m_path).path(),
              .appends = flags.contains(QStringLiteral("O_APPEND"))};
    if (!isOurs(path)) {
        if (!opened.isFolder)
            m_opened.erase(QString::number(call.result));
        return;
    }
    if (!m_names.contains(path)) {
        m_files.push_back({{{m_calls, {}}}});
        change({}, path, m_files.size() - 1);
    }
    opened.file = fileAt(path);
    if (flags.contains(QStringLiteral("O_TRUNC")))
        change(opened.file, {});
}

// Its number may have been given to another file before that returned.
void UncertainDisk::close(const TracedCall& call) {
    const Opened* const opened = openedFor(call);
    if (opened && opened->call < call.before)
        m_opened.erase(call.arguments.at(0).word);
}

void UncertainDisk::write(const TracedCall& call) {
    Opened* const opened = openedFor(call);
    if (!opened)
        return;
    QByteArray text = m_files[opened->file].versions.back().text;
    const bool hasOffset = call.arguments.size() > 3;
    const qsizetype offset = hasOffset         ? call.arguments.at(3).word.toLongLong()
                             : opened->appends ? text.size()
                                               : opened->offset;
    text.append(std::max(offset + call.result - text.size(), qsizetype{0}), '\0');
    text.replace(offset, call.result, call.arguments.at(1).text.first(call.result));
    change(opened->file, text);
    if (!hasOffset)
        opened->offset = offset + call.result;
}

void UncertainDisk::truncate(const TracedCall& call) {
    Opened* const opened = openedFor(call);
    if (!opened)
        return;
    QByteArray text = m_files[opened->file].versions.back().text;
    text.resize(call.arguments.at(1).word.toLongLong(), '\0');
    change(opened->file, text);
}

void UncertainDisk::rename(const TracedCall& call) {
    const QString from = QString::fromUtf8(call.arguments.at(0).text);
    const QString to = QString::fromUtf8(call.arguments.at(1).text);
    if (isOurs(from) || isOurs(to))
        change(from, to, fileAt(from));
}

void UncertainDisk::link(const TracedCall& call) {
    const QString from = QString::fromUtf8(call.arguments.at(0).text);
    const QString to = QString::fromUtf8(call.arguments.at(1).text);
    if (isOurs(from) || isOurs(to))
        change({}, to, fileAt(from));
}

void UncertainDisk::unlink(const TracedCall& call) {
    const QString path = QString::fromUtf8(call.arguments.at(0).text);
    if (isOurs(path))
        change(path, {}, fileAt(path));
}

// Of what happened while it was being synchronised nobody knows.
void UncertainDisk::synchronise(const TracedCall& call) {
    const auto isAfter = [&](const auto& change) { return change.call >= call.before; };
    const Opened* const opened = openedFor(call);
    if (!opened)
        return;
    if (opened->isFolder) {
        const auto firstAfter = std::find_if(m_renamings.begin(), m_renamings.end(), isAfter);
        std::for_each(m_renamings.begin(), firstAfter,
                      [&](const Renaming& renaming) { carryOut(renaming, m_namesOnDisk); });
        m_renamings.erase(m_renamings.begin(), firstAfter);
        return;
    }
    auto& versions = m_files[opened->file].versions;
    const auto firstAfter = std::find_if(std::next(versions.begin()), versions.end(), isAfter);
    versions.erase(versions.begin(), std::prev(firstAfter));
}

UncertainDisk::Opened* UncertainDisk::openedFor(const TracedCall& call) {
    const auto found = m_opened.find(call.arguments.at(0).word);
    return found == m_opened.end() ? nullptr : &found->second;
}

std::size_t UncertainDisk::fileAt(const QString& path) const {
    const auto found = m_names.find(path);
    if (found == m_names.end())
        throw std::runtime_error("there should be no " + path.toStdString());
    return found->second;
}

void UncertainDisk::change(std::size_t file, const QByteArray& text) {
    m_files[file].versions.push_back({m_calls, text});
}

void UncertainDisk::change(const QString& from, const QString& to, std::size_t file) {
    m_renamings.push_back({m_calls, from, to, file});
    carryOut(m_renamings.back(), m_names);
}

void UncertainDisk::carryOut(const Renaming& renaming, Names& names) {
    if (!renaming.from.isEmpty())
        names.erase(renaming.from);
    if (!renaming.to.isEmpty())
        names[renaming.to] = renaming.file;
}

const QByteArray* UncertainDisk::placeOf(const QByteArray& text) {
    return &*m_texts.insert(text).first;
}

std::set<const QByteArray*> UncertainDisk::textsAfterPowerCut(const File& file) {
    std::set<const QByteArray*> texts{placeOf(file.versions.front().text)};
    for (auto version = std::next(file.versions.begin()); version != file.versions.end();
         ++version) {
        const QByteArray& text = version->text;
        const QByteArray half = text.first(text.size() / 2);
        for (const QByteArray& arrived : {QByteArray(), QByteArray(text.size(), '\0'), half,
                                          half + QByteArray(text.size() - half.size(), '\0'), text})
            texts.insert(placeOf(arrived));
    }
    return texts;
}

void UncertainDisk::addFolders(const Names& names, std::vector<Folder>& folders) {
    std::vector<Folder> found{Folder()};
    for (const auto& [name, file] : names) {
        std::vector<Folder> larger;
        for (const QByteArray* text : textsAfterPowerCut(m_files[file])) {
            for (Folder folder : found) {
                folder[name] = text;
                larger.push_back(std::move(folder));
            }
        }
        found = std::move(larger);
    }
    folders.insert(folders.end(), found.begin(), found.end());
}

}  // namespace sayloft::test
