// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QString>
#include <QtGlobal>

namespace sayloft {

/// Feeds the beginning of a file to a hash, slice by slice, so that whoever asks stays responsive.
class StoredDigest {
public:
    enum class Progress { more, complete, failed };

    StoredDigest(const QString& path, qint64 length);

    /// Reads one slice.
    [[nodiscard]] Progress feed(QCryptographicHash& hash);

private:
    QFile m_file;
    qint64 m_left;
    QByteArray m_slice;
};

}  // namespace sayloft
