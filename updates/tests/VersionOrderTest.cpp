// SPDX-License-Identifier: MIT
#include "updates/VersionOrder.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

struct Row {
    const char* name;
    const char* lower;
    const char* higher;
};

class Versions : public testing::TestWithParam<Row> {};

TEST_P(Versions, areOrderedAsUsersReadThem) {
    const QString lower = QString::fromUtf8(GetParam().lower);
    const QString higher = QString::fromUtf8(GetParam().higher);
    EXPECT_TRUE(std::is_lt(compareVersions(lower, higher)));
    EXPECT_TRUE(std::is_gt(compareVersions(higher, lower)));
    EXPECT_TRUE(std::is_eq(compareVersions(lower, lower)));
}

INSTANTIATE_TEST_SUITE_P(
    Order, Versions,
    testing::Values(Row{"numbersByValue", "1.9", "1.10"}, Row{"majorFirst", "1.10", "2.0"},
                    Row{"longerIsNewer", "1.0", "1.0.1"}, Row{"betaBefore", "1.0b2", "1.0"},
                    Row{"betasInOrder", "1.0b2", "1.0b10"},
                    Row{"alphaBeforeBeta", "1.0a9", "1.0b1"},
                    Row{"candidateBefore", "2.0-rc1", "2.0"},
                    Row{"betaAfterOlder", "1.9", "2.0-beta"},
                    Row{"hugeNumbers", "1.99999999999999999999", "1.100000000000000000000"},
                    Row{"nothingIsLowest", "", "0.1"}),
    [](const auto& row) { return row.param.name; });

class SameVersions : public testing::TestWithParam<Row> {};

TEST_P(SameVersions, areEqual) {
    EXPECT_TRUE(std::is_eq(compareVersions(QString::fromUtf8(GetParam().lower),
                                           QString::fromUtf8(GetParam().higher))));
}

INSTANTIATE_TEST_SUITE_P(
    Order, SameVersions,
    testing::Values(Row{"trailingZeros", "1.0", "1.0.0"}, Row{"leadingZeros", "1.02", "1.2"},
                    Row{"buildMetadata", "1.0+debian1", "1.0"}, Row{"separators", "1-2", "1.2"},
                    Row{"letterCase", "1.0RC1", "1.0rc1"}, Row{"empty", "", "0"}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sayloft
