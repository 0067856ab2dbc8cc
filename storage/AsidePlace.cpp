// SPDX-License-Identifier: MIT
#include "storage/AsidePlace.h"

#include "storage/WholeFile.h"

#include <QFileInfo>

namespace sayloft {

AsidePlace::AsidePlace(const QString& wanted, const QByteArray& text) : path(wanted) {
    for (int number = 2; QFileInfo::exists(path); ++number) {
        if (readWholeFile(path) == text) {
            hasText = true;
            return;
        }
        path = wanted + QStringLiteral("-%1").arg(number);
    }
}

}  // namespace sayloft
