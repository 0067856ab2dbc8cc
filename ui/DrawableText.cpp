// SPDX-License-Identifier: MIT
#include "ui/DrawableText.h"

#include <QFontMetrics>
#include <QString>

namespace sayloft {

QString drawableText(const QString& text, const QFont& font) {
    constexpr QChar widePlus(0xFF0B);
    // Also looks in the fonts that stand in for this one.
    if (QFontMetrics(font).inFont(widePlus))
        return text;
    return QString(text).replace(widePlus, QLatin1Char('+'));
}

}  // namespace sayloft
