// SPDX-License-Identifier: MIT
#include "updates/VersionOrder.h"

#include <algorithm>
#include <vector>

namespace sayloft {
namespace {

/// A run of digits or of letters; what is between them only separates.
struct Piece {
    enum class Kind { letters, nothing, number };

    Kind kind = Kind::nothing;
    QString text;
};

Piece::Kind kindOf(QChar character) {
    if (character >= QLatin1Char('0') && character <= QLatin1Char('9'))
        return Piece::Kind::number;
    return character.isLetter() ? Piece::Kind::letters : Piece::Kind::nothing;
}

std::vector<Piece> pieces(const QString& version) {
    std::vector<Piece> pieces;
    // Build metadata says nothing about the order.
    const QString ordered = version.section(QLatin1Char('+'), 0, 0);
    auto before = Piece::Kind::nothing;
    for (const QChar character : ordered) {
        const auto kind = kindOf(character);
        if (kind != Piece::Kind::nothing) {
            if (kind != before)
                pieces.push_back({kind, {}});
            pieces.back().text += character;
        }
        before = kind;
    }
    return pieces;
}

/// By value, however many digits there are.
std::weak_ordering compareNumbers(QString one, QString other) {
    const auto strip = [](QString& digits) {
        while (digits.startsWith(QLatin1Char('0')))
            digits.remove(0, 1);
    };
    strip(one);
    strip(other);
    if (one.size() != other.size())
        return one.size() <=> other.size();
    return one.compare(other) <=> 0;
}

std::weak_ordering compare(const Piece& one, const Piece& other) {
    using Kind = Piece::Kind;
    const bool isOneNumber = one.kind != Kind::letters;
    const bool isOtherNumber = other.kind != Kind::letters;
    if (isOneNumber && isOtherNumber)
        return compareNumbers(one.text, other.text);
    if (isOneNumber != isOtherNumber)
        return isOneNumber ? std::weak_ordering::greater : std::weak_ordering::less;
    return one.text.compare(other.text, Qt::CaseInsensitive) <=> 0;
}

}  // namespace

std::weak_ordering compareVersions(const QString& one, const QString& other) {
    const std::vector<Piece> left = pieces(one);
    const std::vector<Piece> right = pieces(other);
    const Piece missing;
    for (std::size_t i = 0; i < std::max(left.size(), right.size()); ++i) {
        const auto order =
            compare(i < left.size() ? left[i] : missing, i < right.size() ? right[i] : missing);
        if (std::is_neq(order))
            return order;
    }
    return std::weak_ordering::equivalent;
}

}  // namespace sayloft
