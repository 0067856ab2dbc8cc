// SPDX-License-Identifier: MIT
#pragma once

#include "storage/Config.h"
#include "storage/History.h"

#include <QString>

#include <algorithm>

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

/// Whose settings these are; 0 when they are not all of one number.
inline int numberOf(const Config& settings) {
    const int number = static_cast<int>(settings.holdDuration);
    return settings == settingsOf(number) ? number : 0;
}

/// Up to which number the history has every transcript that it can have; 0 when one is missing.
inline int numberOf(const History& history, int transcriptSize) {
    const std::vector<QString>& items = history.items();
    const int newest = items.empty() ? 0 : QString(items.front()).remove(QLatin1Char('.')).toInt();
    if (items.size() != static_cast<std::size_t>(std::clamp(newest, 0, 50)))
        return 0;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (items[i] != transcriptOf(newest - static_cast<int>(i), transcriptSize))
            return 0;
    }
    return newest;
}

}  // namespace sayloft::test
