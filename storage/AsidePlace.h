// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace sayloft {

/// Where a text is put aside so that it is there until the user removes it: in place of no other.
struct AsidePlace {
    /// "<wanted>", or "<wanted>-2" and so on where the names before are taken by other texts.
    AsidePlace(const QString& wanted, const QByteArray& text);

    QString path;
    bool hasText = false;  ///< it is there already
};

}  // namespace sayloft
