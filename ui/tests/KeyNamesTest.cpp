// SPDX-License-Identifier: MIT
#include "ui/KeyNames.h"

#include <gtest/gtest.h>

namespace sayloft {
namespace {

TEST(KeyNames, areThoseOfTheDesktopInTheOrderOfTheGlyphs) {
    EXPECT_EQ(keyNames({Mods::fn, Mods::cmd, Mods::shift, Mods::opt, Mods::ctrl}),
              QStringLiteral("Ctrl+Alt+Shift+Super+Fn"));
    EXPECT_EQ(keyNames({Mods::shift, Mods::cmd}), QStringLiteral("Shift+Super"));
}

TEST(KeyNames, sayWhenThereIsNone) {
    EXPECT_EQ(keyNames({}), QStringLiteral("no key"));
}

}  // namespace
}  // namespace sayloft
