// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <optional>

namespace sayloft {

/// A JSON file that is rewritten in place and still costs nothing when the program or the machine
/// dies in the middle of that: a copy stands beside it.
///
/// A save first writes the copy "<path>.new" and then the file. On a thread of its own the new copy
/// is brought to the disk and only then takes the place of "<path>.saved". So at every instant one
/// of the three is complete: "<path>.new" where the program is killed while the file is cut off,
/// and "<path>.saved" where the power fails before any of it has reached the disk.
/// Main thread.
class KeptFile {
public:
    /// Says whether a text is all that such a file holds.
    using IsWhole = bool (*)(const QByteArray& text);

    /// Who changes the file.
    enum class Author {
        program,  ///< the program alone: a text that is no JSON is damaged
        user,     ///< the user too, who may have made a slip in it
    };

    enum class Source {
        none,        ///< there is no such file
        file,        ///< the file itself
        copy,        ///< the file is cut off, as a save that was not finished leaves it, or damaged
        broken,      ///< the file is not what it should be: somebody has changed it
        unreadable,  ///< the file or its copy is there and cannot be read; the text is the copy's,
                     ///< if any
    };
    struct Content {
        std::optional<QByteArray> text;
        Source source = Source::none;
    };

    KeptFile(QString path, IsWhole isWhole, Author author);

    [[nodiscard]] const QString& path() const { return m_path; }

    /// A file that somebody has removed is not brought back.
    [[nodiscard]] Content read() const;

    /// Returns without waiting for the disk, but for the very first copy. False when it could not
    /// be written; where there is no room for a copy, the file stays as it is.
    bool write(const QByteArray& text) const;

    /// Once, before the first read and write: finishes a save that a crash has cut off, keeps a
    /// broken text as "<path>.broken" and what was saved before it as "<path>.last-good", sees to
    /// it that there is a copy, and logs what is not as it should be. `Source::broken` also where
    /// what somebody has changed is cut off, and the copy counts.
    Source mend() const;

    /// Waits until all that was saved is on the disk, but no longer than `deadline`.
    static void waitForDisk(std::chrono::milliseconds deadline);

private:
    enum class Copied { yes, noRoom, impossible };

    [[nodiscard]] QString newCopy() const { return m_path + QStringLiteral(".new"); }
    [[nodiscard]] QString savedCopy() const { return m_path + QStringLiteral(".saved"); }
    [[nodiscard]] QString brokenText() const { return m_path + QStringLiteral(".broken"); }
    [[nodiscard]] QString lastGood() const { return m_path + QStringLiteral(".last-good"); }
    [[nodiscard]] bool isByAccident(const QByteArray& text) const;
    [[nodiscard]] std::optional<QByteArray> wholeCopy() const;
    [[nodiscard]] bool isCopyOutOfReach() const;
    [[nodiscard]] bool findsRoom(const QByteArray& text) const;
    [[nodiscard]] Copied writeNewCopy(const QByteArray& text) const;
    void saveNewCopy() const;
    void saveNewCopyLater() const;
    void refreshCopy(const QByteArray& text) const;
    Source finishSave(const QByteArray& text) const;
    void keepBroken(const QByteArray& text) const;
    void keepLastGood() const;
    /// Both return the path where the text is, in place of nothing else.
    [[nodiscard]] static std::optional<QString> writeAside(const QByteArray& text,
                                                           const QString& wanted);
    [[nodiscard]] static std::optional<QString> moveAside(const QString& from,
                                                          const QString& wanted);
    void log(const QString& what) const;

    QString m_path;
    IsWhole m_isWhole;
    Author m_author;
};

}  // namespace sayloft
