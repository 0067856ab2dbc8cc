// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace sayloft {

/// What the program needs to be let do, as the anchors of the privacy settings name it.
enum class PrivacyPane { accessibility, microphone };

/// Programs with their arguments that hold the setting, the most fitting first; not all of them are
/// installed. `desktops` is what XDG_CURRENT_DESKTOP says. The settings of another desktop than the
/// running one change nothing in it and are left out.
[[nodiscard]] std::vector<QStringList> settingsPrograms(PrivacyPane pane, const QString& desktops);

}  // namespace sayloft
