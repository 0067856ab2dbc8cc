// SPDX-License-Identifier: MIT
#pragma once

#include "storage/Config.h"
#include "storage/History.h"

#include <QString>

namespace sayloft::test {

/// Settings of which every part that can be tells the number.
inline Config settingsOf(int number) {
    Config settings;
    settings.dictateChords = {number};
    settings.holdDuration = number;
    settings.inputDeviceUID = QString::number(number);
    settings.replacements = {500, {QString::number(number), QStringLiteral("größer")}};
    settings.model = QStringLiteral("model %1").arg(number);
    return settings;
}

inline QString transcriptOf(int number, int size) {
    return QString::number(number).rightJustified(size, QLatin1Char('.'));
}

}  // namespace sayloft::test
