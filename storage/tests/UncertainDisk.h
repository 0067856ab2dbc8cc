// SPDX-License-Identifier: MIT
#pragma once

#include "storage/tests/TracedCalls.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <map>
#include <set>
#include <vector>

namespace sayloft::test {

/// What a disk may hold of a file, and of the copies beside it, when the power fails. What was
/// synchronised is there; synchronising a file says nothing of its name. Names change in the order
/// of the calls and in one step each, as file systems with a journal do it, so only the last
/// changes may be missing. Independently of that and of each other, files may have any text since
/// they were synchronised last, all of it, half of it, as many zeros or nothing.
class UncertainDisk {
public:
    /// Texts by path; the same text always stands in the same place.
    using Folder = std::map<QString, const QByteArray*>;

    /// Everything that is there now is on the disk for certain. Copies are called like the file,
    /// and then something.
    explicit UncertainDisk(const QString& path);

    /// All calls of a trace in turn. Throws std::runtime_error where it does not know what one
    /// does.
    void apply(const TracedCall& call);

    /// What a program would find while the power is on.
    [[nodiscard]] std::map<QString, QByteArray> now() const;

    /// What it may find when the power has failed, some of it more than once.
    [[nodiscard]] std::vector<Folder> afterPowerCut();

private:
    using Names = std::map<QString, std::size_t>;
    /// Which call made it, as its number.
    struct Version {
        std::size_t call;
        QByteArray text;
    };
    struct File {
        std::vector<Version> versions;  ///< the first one is on the disk for certain
    };
    struct Renaming {
        std::size_t call;
        QString from;  ///< a name that is gone then, or none
        QString to;    ///< a name that leads to `file` then, or none
        std::size_t file;
    };
    struct Opened {
        std::size_t call = 0;
        bool isFolder = false;
        bool appends = false;
        std::size_t file = 0;
        qsizetype offset = 0;
    };

    void open(const TracedCall& call);
    void close(const TracedCall& call);
    void write(const TracedCall& call);
    void truncate(const TracedCall& call);
    void rename(const TracedCall& call);
    void link(const TracedCall& call);
    void unlink(const TracedCall& call);
    void synchronise(const TracedCall& call);

    [[nodiscard]] bool isOurs(const QString& path) const { return path.startsWith(m_path); }
    [[nodiscard]] Opened* openedFor(const TracedCall& call);
    [[nodiscard]] std::size_t fileAt(const QString& path) const;
    void change(std::size_t file, const QByteArray& text);
    void change(const QString& from, const QString& to, std::size_t file);
    static void carryOut(const Renaming& renaming, Names& names);
    [[nodiscard]] const QByteArray* placeOf(const QByteArray& text);
    [[nodiscard]] std::set<const QByteArray*> textsAfterPowerCut(const File& file);
    void addFolders(const Names& names, std::vector<Folder>& folders);

    QString m_path;
    std::size_t m_calls = 0;  ///< that were applied
    std::vector<File> m_files;
    Names m_names;
    Names m_namesOnDisk;
    std::vector<Renaming> m_renamings;   ///< since the folder was synchronised
    std::map<QString, Opened> m_opened;  ///< by descriptor
    std::set<QByteArray> m_texts;
};

}  // namespace sayloft::test
