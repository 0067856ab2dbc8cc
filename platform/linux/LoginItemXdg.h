// SPDX-License-Identifier: MIT
#pragma once

#include "platform/LoginItem.h"

#include <QString>
#include <QStringList>

namespace sayloft {

class DesktopEntry;

/// The entry in the user's autostart folder, by the rules of freedesktop.org: one with the same
/// name hides those of the system.
class LoginItemXdg : public LoginItem {
public:
    /// `program` is the executable that a login starts.
    explicit LoginItemXdg(QString program);

    /// Whether a login starts this very program, wherever an entry for it once pointed.
    [[nodiscard]] bool isEnabled() const override;
    [[nodiscard]] std::optional<QString> setEnabled(bool enabled) override;
    [[nodiscard]] std::optional<QString> followProgram() override;

private:
    [[nodiscard]] bool starts(const DesktopEntry& entry) const;
    [[nodiscard]] std::optional<QString> write(const QByteArray& entry) const;
    [[nodiscard]] std::optional<QString> disable() const;

    const QString m_program;
};

}  // namespace sayloft
