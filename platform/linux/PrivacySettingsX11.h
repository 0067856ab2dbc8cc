// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PrivacySettings.h"
#include "platform/linux/HelpWindow.h"
#include "platform/linux/ProgramChain.h"
#include "platform/linux/XcbHandles.h"

#include <QString>

namespace sayloft {

/// X11 lets every program watch and type keys; what can be missing are the server's extensions for
/// it. The settings are those of the running desktop, or else, and where those cannot help, a page
/// that explains what to do.
class PrivacySettingsX11 : public PrivacySettings {
public:
    /// `helpPage` is an HTML file with an anchor for every section.
    explicit PrivacySettingsX11(QString helpPage);

    [[nodiscard]] bool accessibilityTrusted() const override;
    void open(const QUrl& pane) override;
    void openHelp(const QString& section) override;

private:
    [[nodiscard]] bool desktopDecides() const;
    void openOneOf(ProgramChain::Commands settings, const QString& helpSection);

    QString m_helpPage;
    /// Kept, since a new one for every question costs the main thread time; made anew once lost.
    mutable XcbConnection m_connection;
    ProgramChain m_programs;
    HelpWindow m_help;
};

}  // namespace sayloft
