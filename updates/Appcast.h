// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace sayloft {

/// One version that an appcast announces.
struct Release {
    QString version;       ///< what versions are compared by
    QString shownVersion;  ///< what users call it
    QString notes;         ///< what is new: HTML or plain text; may be empty
    QUrl page;             ///< where it is downloaded by hand; may be empty
};

/// Reads a Sparkle appcast, which is RSS 2.0 with elements of its own
/// (https://sparkle-project.org/documentation/publishing). Left out are releases for other systems,
/// those of a channel, which nobody has chosen, and those without a version. Nothing when it is no
/// such feed or breaks off.
[[nodiscard]] std::optional<std::vector<Release>> parseAppcast(const QByteArray& xml);

/// The newest of them; none when there are none.
[[nodiscard]] std::optional<Release> newestOf(const std::vector<Release>& releases);

}  // namespace sayloft
