// SPDX-License-Identifier: MIT
#include "ui/GlyphText.h"

#include <QApplication>
#include <QFontMetrics>
#include <QList>

#include <algorithm>

namespace sayloft {

QString displayable(const QString& text, const QString& plainer, const QFont& font) {
    const QFontMetrics metrics(font);
    const auto characters = text.toUcs4();
    const bool allThere =
        std::all_of(characters.begin(), characters.end(),
                    [&metrics](uint character) { return metrics.inFontUcs4(character); });
    return allThere ? text : plainer;
}

QString displayable(const QString& text, const QString& plainer) {
    return displayable(text, plainer, QApplication::font());
}

}  // namespace sayloft
