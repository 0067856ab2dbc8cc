// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace sayloft {

/// Where new versions are announced, and what they are compared with.
struct UpdateSource {
    QUrl feed;  ///< an appcast; empty: updates come with the package manager
    QString ownVersion;
};

/// What the program was built with.
[[nodiscard]] UpdateSource builtInUpdateSource();

}  // namespace sayloft
