// SPDX-License-Identifier: MIT
#include "speech/Replacements.h"

namespace sayloft {

QString applyReplacements(QString text, const std::vector<std::vector<QString>>& dictionary) {
    for (const std::vector<QString>& entry : dictionary) {
        const bool usable = entry.size() == 2 && !entry.front().isEmpty();
        if (usable)
            text.replace(entry.front(), entry.back(), Qt::CaseInsensitive);
    }
    return text;
}

}  // namespace sayloft
