// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft::test {

class XServer;

/// The screen of a test with widgets, as long as its main function runs.
[[nodiscard]] const XServer& widgetTestDisplay();

}  // namespace sayloft::test
