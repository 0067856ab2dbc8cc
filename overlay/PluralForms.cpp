// SPDX-License-Identifier: MIT
#include "overlay/PluralForms.h"

namespace sayloft {
namespace {

bool isTwoToFour(int digit) {
    return digit >= 2 && digit <= 4;
}

}  // namespace

QString plWords(int n) {
    if (n == 1)
        return QStringLiteral("słowo");
    const bool isTeen = n % 100 / 10 == 1;
    return isTwoToFour(n % 10) && !isTeen ? QStringLiteral("słowa") : QStringLiteral("słów");
}

}  // namespace sayloft
