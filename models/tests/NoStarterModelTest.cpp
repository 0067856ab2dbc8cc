// SPDX-License-Identifier: MIT
#include "models/ModelCatalogue.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

TEST(NoStarterModel, isNotInTheCatalogue) {
    EXPECT_EQ(MODELS.size(), 2U);
}

}  // namespace
}  // namespace sayloft
