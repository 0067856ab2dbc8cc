// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PrivacySettings.h"

namespace sayloft {

/// X11 lets every program watch and type keys; what can be missing are the server's extensions for
/// it. The settings are those of the desktop that is installed.
class PrivacySettingsX11 : public PrivacySettings {
public:
    [[nodiscard]] bool accessibilityTrusted() const override;
    void open(const QUrl& pane) override;
};

}  // namespace sayloft
