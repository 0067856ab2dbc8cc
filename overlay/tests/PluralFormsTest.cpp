// SPDX-License-Identifier: MIT
#include "overlay/PluralForms.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

void expectForm(const QString& form, std::initializer_list<int> counts) {
    for (const int count : counts)
        EXPECT_EQ(plWords(count), form) << count;
}

TEST(PluralForms, oneTakesTheSingular) {
    expectForm(QStringLiteral("słowo"), {1});
}

TEST(PluralForms, numbersThatEndInTwoToFourTakeTheFirstPlural) {
    expectForm(QStringLiteral("słowa"), {2, 3, 4, 22, 23, 24, 104, 122, 1002});
}

TEST(PluralForms, teensAndAllOthersTakeTheSecondPlural) {
    expectForm(QStringLiteral("słów"),
               {0, 5, 10, 11, 12, 13, 14, 15, 20, 21, 25, 101, 112, 113, 114});
}

}  // namespace
}  // namespace sayloft
