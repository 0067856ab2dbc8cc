// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/XServer.h"

#include <QString>
#include <QStringList>

namespace sayloft::test {

/// The windows on the screen whose class matches, as xdotool numbers them.
[[nodiscard]] QStringList visibleWindows(const XServer& server, const QString& windowClass);

}  // namespace sayloft::test
