// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

namespace sayloft {

/// The system's say over what a program may watch and type. Main thread.
class PrivacySettings {
public:
    virtual ~PrivacySettings() = default;

    /// Whether modifier keys may be watched everywhere and keys be typed into other programs. Never
    /// asks the user and never remembers an answer.
    [[nodiscard]] virtual bool accessibilityTrusted() const = 0;

    /// Opens the place in the system's settings that `pane` names, or the help where no setting
    /// helps; failure is silent.
    virtual void open(const QUrl& pane) = 0;

    /// Opens the program's own help at a section: "accessibility", "microphone" or "sound-server".
    virtual void openHelp(const QString& section) = 0;
};

}  // namespace sayloft
