// SPDX-License-Identifier: MIT
#include "speech/Replacements.h"

#include <QChar>
#include <QStringView>

#include <utility>

namespace sayloft {
namespace {

/// Case folded; every character stands where it did, since this folding keeps their sizes.
QString folded(const QString& text) {
    QString result = text;
    for (qsizetype i = 0; i < result.size(); ++i) {
        const bool isPair =
            result[i].isHighSurrogate() && i + 1 < result.size() && result[i + 1].isLowSurrogate();
        if (!isPair) {
            result[i] = result[i].toCaseFolded();
            continue;
        }
        const char32_t fold = QChar::toCaseFolded(QChar::surrogateToUcs4(result[i], result[i + 1]));
        result[i] = QChar(QChar::highSurrogate(fold));
        result[++i] = QChar(QChar::lowSurrogate(fold));
    }
    return result;
}

/// A text in which a whole dictionary is looked for: it is folded once and not for every entry.
class SearchedText {
public:
    explicit SearchedText(const QString& text) : m_text(text), m_folded(folded(text)) {}

    void replace(const QString& heard, const QString& replacement) {
        const QString wanted = folded(heard);
        const qsizetype first = m_folded.indexOf(wanted);
        if (first < 0)
            return;
        const QString foldedReplacement = folded(replacement);
        QString text;
        QString foldedText;
        text.reserve(m_text.size() + replacement.size());
        foldedText.reserve(m_text.size() + replacement.size());
        qsizetype done = 0;
        for (qsizetype at = first; at >= 0; at = m_folded.indexOf(wanted, done)) {
            text.append(QStringView(m_text).mid(done, at - done)).append(replacement);
            foldedText.append(QStringView(m_folded).mid(done, at - done)).append(foldedReplacement);
            done = at + wanted.size();
        }
        text.append(QStringView(m_text).mid(done));
        foldedText.append(QStringView(m_folded).mid(done));
        m_text = std::move(text);
        m_folded = std::move(foldedText);
    }

    [[nodiscard]] const QString& text() const { return m_text; }

private:
    QString m_text;
    QString m_folded;
};

}  // namespace

QString applyReplacements(const QString& text,
                          const std::vector<std::vector<QString>>& dictionary) {
    SearchedText searched(text);
    for (const std::vector<QString>& entry : dictionary) {
        const bool isUsable = entry.size() == 2 && !entry.front().isEmpty();
        if (isUsable)
            searched.replace(entry.front(), entry.back());
    }
    return searched.text();
}

}  // namespace sayloft
