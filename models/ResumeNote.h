// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QtGlobal>

#include <optional>

namespace sayloft {

/// What must be known about a file that has arrived in part to fetch the rest of the same file. It
/// is kept in a small file of its own beside the part.
struct ResumeNote {
    QUrl url;                    ///< as it was asked for, before any redirect
    QByteArray etag;             ///< strong entity tag, quotes included
    std::optional<qint64> size;  ///< of the whole file
    QByteArray sha256;           ///< of the whole file in hexadecimal digits; empty when unknown

    bool operator==(const ResumeNote&) const = default;

    /// None when there is no note or what is there is none.
    [[nodiscard]] static std::optional<ResumeNote> load(const QString& path);
    void save(const QString& path) const;
};

/// Whether a host can tell by this tag that a file is byte for byte the same.
[[nodiscard]] bool isStrongEntityTag(const QByteArray& etag);

}  // namespace sayloft
