// SPDX-License-Identifier: MIT
#include "platform/linux/PrivacySettingsX11.h"

#include "platform/linux/XcbHandles.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>

#include <xcb/xtest.h>

#include <cstring>
#include <vector>

namespace sayloft {
namespace {

bool hasExtension(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_query_extension(connection, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbOwned<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection, cookie, nullptr));
    return reply && reply->present != 0;
}

/// Programs that hold the setting, the most fitting first.
std::vector<QStringList> settingsPrograms(const QString& anchor) {
    if (anchor == QStringLiteral("Privacy_Microphone"))
        return {{QStringLiteral("gnome-control-center"), QStringLiteral("sound")},
                {QStringLiteral("systemsettings"), QStringLiteral("kcm_pulseaudio")},
                {QStringLiteral("pavucontrol"), QStringLiteral("--tab=4")}};
    return {{QStringLiteral("gnome-control-center"), QStringLiteral("universal-access")},
            {QStringLiteral("systemsettings"), QStringLiteral("kcm_access")},
            {QStringLiteral("xfce4-accessibility-settings")}};
}

}  // namespace

bool PrivacySettingsX11::accessibilityTrusted() const {
    const XcbConnection connection = connectToXServer();
    return connection && hasExtension(connection.get(), "XKEYBOARD") &&
           hasExtension(connection.get(), "XTEST");
}

void PrivacySettingsX11::open(const QUrl& pane) {
    for (QStringList command : settingsPrograms(pane.query())) {
        const QString program = QStandardPaths::findExecutable(command.takeFirst());
        if (!program.isEmpty() && QProcess::startDetached(program, command))
            return;
    }
}

}  // namespace sayloft
