// SPDX-License-Identifier: MIT
#pragma once

#include "ui/tests/OpenedSettings.h"

#include <gtest/gtest.h>

namespace sayloft {

/// A test with the settings window.
class SettingsFixture : public testing::Test, protected test::OpenedSettings {};

}  // namespace sayloft
