// SPDX-License-Identifier: MIT
#pragma once

#include "models/ResumeNote.h"

#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace sayloft {

/// A file on its way, beside the place where it will stand once it is whole. It outlives a download
/// that was cut short together with a note by which a later one can go on. Blocks; any one thread.
class PartialFile {
public:
    /// What is appended to the name of the destination, for the file and for its note.
    static const QString suffix;
    static const QString noteSuffix;

    explicit PartialFile(const QString& destination);

    /// The note, where there is one and anything to go on from.
    [[nodiscard]] std::optional<ResumeNote> note() const;
    [[nodiscard]] QString path() const { return m_file.fileName(); }
    [[nodiscard]] qint64 size() const { return m_file.size(); }
    [[nodiscard]] qint64 freeSpace() const;
    /// While it is being written.
    [[nodiscard]] int handle() const { return m_file.handle(); }

    // Each is false when it failed; `error` says why.

    /// Creates the file and missing directories. What was there, and its note, are gone.
    [[nodiscard]] bool startAnew();
    /// What is stored beyond `offset` is gone.
    [[nodiscard]] bool continueAt(qint64 offset);
    [[nodiscard]] bool append(QByteArrayView bytes);
    /// Replaces the destination in one step. For after everything has reached the disk.
    [[nodiscard]] bool putInPlace();

    [[nodiscard]] QString error() const { return m_error; }

    /// From now on a later download can go on from what is stored.
    void keepFor(const ResumeNote& note);
    void remove();
    /// Removes the file unless a later download can go on from it.
    void leave();

private:
    [[nodiscard]] bool failed(const QString& error);
    [[nodiscard]] QString notePath() const;

    QString m_destination;
    QFile m_file;
    QString m_error;
};

}  // namespace sayloft
