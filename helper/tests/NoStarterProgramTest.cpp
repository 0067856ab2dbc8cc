// SPDX-License-Identifier: MIT
// The helper's program in a build without the starter.
#include "helper/tests/HelperBundle.h"

#include <gtest/gtest.h>

namespace sayloft::helper::test {
namespace {

TEST(NoStarterProgram, saysThatItWasBuiltWithoutTheStarter) {
    const HelperBundle bundle;
    expectFailure(bundle.runWith(bundle.starterModel()),
                  QStringLiteral("this build has no starter recogniser"));
}

}  // namespace
}  // namespace sayloft::helper::test
