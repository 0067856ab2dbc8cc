// SPDX-License-Identifier: MIT
#include "storage/KeptFile.h"

#include "storage/AsidePlace.h"
#include "storage/Json.h"
#include "storage/Log.h"
#include "storage/PrivateFolder.h"
#include "storage/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QThreadPool>

#include <cerrno>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft {
namespace {

struct Disk {
    std::mutex newCopies;  ///< held while one is made or renamed, never while the disk is awaited
    QThreadPool thread;
};

Disk& disk() {
    // Never destroyed: a disk that is stuck is not to keep the process from ending.
    static auto* const theDisk = [] {
        auto* made = new Disk;
        made->thread.setMaxThreadCount(1);
        made->thread.setExpiryTimeout(1000);
        return made;
    }();
    return *theDisk;
}

/// A directory is synchronised as a file is.
void synchronise(const QString& path) {
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

void synchroniseLater(const QString& path) {
    disk().thread.start([path] { synchronise(path); });
}

bool isStillAt(const QString& path, int descriptor) {
    struct stat there {};
    struct stat open {};
    return ::stat(QFile::encodeName(path).constData(), &there) == 0 &&
           ::fstat(descriptor, &open) == 0 && there.st_ino == open.st_ino &&
           there.st_dev == open.st_dev;
}

/// Of a text that was to be put aside.
QString fate(const std::optional<QString>& path) {
    return path ? QStringLiteral("is kept in ") + QFileInfo(*path).fileName()
                : QStringLiteral("could not be kept");
}

}  // namespace

KeptFile::KeptFile(QString path, IsWhole isWhole, Author author)
    : m_path(std::move(path)), m_isWhole(isWhole), m_author(author) {}

KeptFile::Content KeptFile::read() const {
    // A link into nowhere has not been removed: what it leads to may be back at the next start.
    if (!QFileInfo::exists(m_path) && !QFileInfo(m_path).isSymLink())
        return {};
    auto text = readWholeFile(m_path);
    if (!text)
        return {.text = wholeCopy(), .source = Source::unreadable};
    if (m_isWhole(*text))
        return {.text = std::move(text), .source = Source::file};
    if (isByAccident(*text)) {
        if (auto copy = wholeCopy())
            return {.text = std::move(copy), .source = Source::copy};
        if (isCopyOutOfReach())
            return {.text = std::nullopt, .source = Source::unreadable};
    }
    return {.text = std::move(text), .source = Source::broken};
}

bool KeptFile::write(const QByteArray& text) const {
    makePrivateFolder(QFileInfo(m_path).path());
    const Copied copied = writeNewCopy(text);
    if (copied == Copied::noRoom && !findsRoom(text))
        return false;
    // Nothing else is on the disk for certain.
    if (copied == Copied::yes && QFileInfo::exists(m_path) && !QFileInfo::exists(savedCopy()))
        saveNewCopy();
    const bool isWritten = writeWholeFile(m_path, text);
    // Otherwise a new copy is an older one, damaged perhaps, and worth less than the saved one.
    if (copied == Copied::yes)
        saveNewCopyLater();
    else
        synchroniseLater(m_path);
    return isWritten;
}

KeptFile::Source KeptFile::mend() const {
    const Content content = read();
    switch (content.source) {
        case Source::none:
            QFile::remove(newCopy());
            QFile::remove(savedCopy());
            break;
        case Source::file:
            refreshCopy(*content.text);
            break;
        case Source::copy:
            return finishSave(*content.text);
        case Source::broken:
            keepBroken(*content.text);
            keepLastGood();
            break;
        case Source::unreadable:
            log(QStringLiteral("cannot be read"));
            break;
    }
    return content.source;
}

void KeptFile::waitForDisk(std::chrono::milliseconds deadline) {
    disk().thread.waitForDone(static_cast<int>(deadline.count()));
}

// Nobody wishes for half a text, nor for one that is no JSON where only the program writes.
bool KeptFile::isByAccident(const QByteArray& text) const {
    return isCutOffJson(text) || (m_author == Author::program && !parseJson(text));
}

// A new copy is never older than the one that is saved.
std::optional<QByteArray> KeptFile::wholeCopy() const {
    for (const QString& path : {newCopy(), savedCopy()}) {
        auto text = readWholeFile(path);
        if (text && m_isWhole(*text))
            return text;
    }
    return std::nullopt;
}

bool KeptFile::isCopyOutOfReach() const {
    const auto isOutOfReach = [](const QString& path) {
        return QFileInfo::exists(path) && !readWholeFile(path);
    };
    return isOutOfReach(newCopy()) || isOutOfReach(savedCopy());
}

// What is not longer than before should find its room in the file itself. Where it does not after
// all, the copy has what was there; of a broken text there may be none.
bool KeptFile::findsRoom(const QByteArray& text) const {
    const auto before = readWholeFile(m_path);
    return before && text.size() <= before->size() && m_isWhole(*before) &&
           QFileInfo::exists(savedCopy());
}

KeptFile::Copied KeptFile::writeNewCopy(const QByteArray& text) const {
    const std::lock_guard lock(disk().newCopies);
    // In place of an older one, which may be on its way to the disk or all that there is.
    QFile copy(newCopy() + QStringLiteral(".part"));
    if (!copy.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered, ownersAlone))
        return errno == ENOSPC || errno == EDQUOT ? Copied::noRoom : Copied::impossible;
    const bool isComplete = copy.write(text) == text.size();
    if (isComplete && moveFile(copy.fileName(), newCopy()))
        return Copied::yes;
    copy.remove();
    return isComplete ? Copied::impossible : Copied::noRoom;
}

void KeptFile::saveNewCopy() const {
    QFile copy(newCopy());
    if (!copy.open(QIODevice::ReadOnly) || ::fsync(copy.handle()) != 0)
        return;
    // Its name too: whoever finds a saved copy relies on it.
    synchronise(QFileInfo(m_path).path());
    const std::lock_guard lock(disk().newCopies);
    // A later save has made another one, which is saved in its turn.
    if (isStillAt(newCopy(), copy.handle()))
        static_cast<void>(moveFile(newCopy(), savedCopy()));
}

void KeptFile::saveNewCopyLater() const {
    disk().thread.start([file = *this] {
        file.saveNewCopy();
        synchronise(QFileInfo(file.m_path).path());
        synchronise(file.m_path);
    });
}

// The first copy of a file from an older version, or the copy of what the user has written.
void KeptFile::refreshCopy(const QByteArray& text) const {
    if (readWholeFile(savedCopy()) == text) {
        QFile::remove(newCopy());
        return;
    }
    if (writeNewCopy(text) == Copied::yes)
        saveNewCopyLater();
}

KeptFile::Source KeptFile::finishSave(const QByteArray& text) const {
    const QByteArray there = readWholeFile(m_path).value_or(QByteArray());
    log((isCutOffJson(there) ? QStringLiteral("is cut off") : QStringLiteral("is damaged")) +
        QStringLiteral(": read from its copy"));
    if (text.startsWith(there)) {
        write(text);
        return Source::copy;
    }
    // Not only the beginning of what was to be saved: somebody has lost its end while changing it.
    const auto kept = writeAside(there, brokenText());
    log(QStringLiteral("was changed: that text ") + fate(kept));
    if (kept)
        write(text);
    return Source::broken;
}

// Written, so that the file stays where the user looks for it, or moved, which takes no room.
void KeptFile::keepBroken(const QByteArray& text) const {
    if (text.isEmpty())
        return log(QStringLiteral("is empty: not read"));
    auto kept = writeAside(text, brokenText());
    if (!kept)
        kept = moveAside(m_path, brokenText());
    log(QStringLiteral("is damaged: not read, its text ") + fate(kept));
}

// The next save replaces it by what counts instead of the broken text.
void KeptFile::keepLastGood() const {
    for (const QString& copy : {newCopy(), savedCopy()}) {
        const auto text = readWholeFile(copy);
        // What cannot be read now may be all that there is.
        if (!QFileInfo::exists(copy) || (text && !m_isWhole(*text)))
            continue;
        auto kept = text ? writeAside(*text, lastGood()) : std::nullopt;
        if (!kept)
            kept = moveAside(copy, lastGood());
        return log(QStringLiteral("as it was saved last ") + fate(kept));
    }
}

std::optional<QString> KeptFile::writeAside(const QByteArray& text, const QString& wanted) {
    const AsidePlace place(wanted, text);
    if (!place.hasText && !writeWholeFile(place.path, text)) {
        QFile::remove(place.path);
        return std::nullopt;
    }
    // Before the next copy, which may replace the only other one.
    synchroniseLater(place.path);
    return place.path;
}

std::optional<QString> KeptFile::moveAside(const QString& from, const QString& wanted) {
    const QString to = AsidePlace(wanted, {}).path;
    return moveFile(from, to) ? std::optional(to) : std::nullopt;
}

void KeptFile::log(const QString& what) const {
    logf(QFileInfo(m_path).fileName() + QLatin1Char(' ') + what);
}

}  // namespace sayloft
