// SPDX-License-Identifier: MIT
#pragma once

#include "models/Sha256.h"

#include <QByteArray>
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
    [[nodiscard]] Progress feed(Sha256& hash);

private:
    QFile m_file;
    qint64 m_left;
    QByteArray m_slice;
};

}  // namespace sayloft
