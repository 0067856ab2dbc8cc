// SPDX-License-Identifier: MIT
#include "app/TextFigures.h"

#include <QTextBoundaryFinder>

#include <cmath>

namespace sayloft {

bool isLineBreak(QChar character) {
    switch (character.unicode()) {
        case u'\n':
        case u'\v':
        case u'\f':
        case u'\r':
        case u'\u0085':
        case u'\u2028':
        case u'\u2029':
            return true;
        default:
            return false;
    }
}

int characterCount(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

int wordCount(const QString& text) {
    int words = 0;
    bool inWord = false;
    for (const QChar character : text) {
        const bool between = character == QLatin1Char(' ') || isLineBreak(character);
        words += !between && !inWord ? 1 : 0;
        inWord = !between;
    }
    return words;
}

int wordsPerMinute(int words, double seconds) {
    return static_cast<int>(std::lround(words / (seconds / 60)));
}

}  // namespace sayloft
