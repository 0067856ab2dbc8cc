// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sayloft {

/// Appends `message` and a line feed to LOG_URL, creating the file and its directory when needed.
/// Any thread; every failure is swallowed. A line is written in one piece.
void logf(const QString& message);

}  // namespace sayloft
