// SPDX-License-Identifier: MIT
#include "models/ModelCatalogue.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

TEST(StarterModel, endsTheCatalogueAndIsNeverDownloaded) {
    ASSERT_EQ(MODELS.size(), 3U);
    EXPECT_EQ(MODELS[2].key, QStringLiteral("starter"));
    EXPECT_EQ(MODELS[2].file, QStringLiteral("starter-en-us.model"));
    EXPECT_TRUE(MODELS[2].url.isEmpty());
    EXPECT_EQ(MODELS[2].label, QStringLiteral("Starter — English, offline, lower accuracy"));
}

}  // namespace
}  // namespace sayloft
