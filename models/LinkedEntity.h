// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <optional>

namespace sayloft {

/// What a model host says, when it redirects, about the large file that it redirects to.
struct LinkedEntity {
    QByteArray sha256;           ///< of the whole file, 64 lower-case hexadecimal digits; or empty
    std::optional<qint64> size;  ///< of the whole file in bytes

    bool operator==(const LinkedEntity&) const = default;

    /// From the values of the headers X-Linked-ETag and X-Linked-Size. A tag that is no SHA-256 and
    /// a size that is no number say nothing.
    [[nodiscard]] static LinkedEntity fromHeaders(const QByteArray& tag, const QByteArray& size);

    /// The newer statement counts where there is one.
    void updateFrom(const LinkedEntity& newer);
};

}  // namespace sayloft
