// SPDX-License-Identifier: MIT
#include "platform/linux/PrivacySettingsX11.h"

#include "platform/linux/SettingsPrograms.h"

#include <xcb/xtest.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>

namespace sayloft {
namespace {

// Asks the server itself; libxcb's own functions for it remember the first answer.
bool hasExtension(xcb_connection_t* connection, const char* name) {
    const auto cookie =
        xcb_query_extension(connection, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbOwned<xcb_query_extension_reply_t> reply(
        xcb_query_extension_reply(connection, cookie, nullptr));
    return reply && reply->present != 0;
}

/// Whether the server is still there. Takes in what it has sent unasked, such as changes of the
/// keyboard map, which every client gets.
bool isAlive(xcb_connection_t* connection) {
    while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
    }
    return xcb_connection_has_error(connection) == 0;
}

std::optional<PrivacyPane> paneOf(const QString& anchor) {
    if (anchor == QStringLiteral("Privacy_Accessibility"))
        return PrivacyPane::accessibility;
    if (anchor == QStringLiteral("Privacy_Microphone"))
        return PrivacyPane::microphone;
    return std::nullopt;
}

/// Programs of Wayland are out of reach of every X server.
bool isWaylandSession() {
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           qEnvironmentVariable("XDG_SESSION_TYPE") == QStringLiteral("wayland");
}

/// Opens the page in a web browser. Fails where the desktop knows none, rather than hand the page
/// to an editor.
QStringList openInBrowser(const QUrl& page) {
    const QString script = QStringLiteral(
        "browser=$(xdg-mime query default x-scheme-handler/https) && "
        "[ -n \"$browser\" ] && "
        "[ \"$browser\" = \"$(xdg-mime query default text/html)\" ] && "
        "xdg-open \"$1\"");
    return {QStringLiteral("/bin/sh"), QStringLiteral("-c"), script, QStringLiteral("sh"),
            page.toString(QUrl::FullyEncoded)};
}

}  // namespace

PrivacySettingsX11::PrivacySettingsX11(QString helpPage) : m_helpPage(std::move(helpPage)) {}

bool PrivacySettingsX11::accessibilityTrusted() const {
    if (!m_connection || !isAlive(m_connection.get()))
        m_connection = connectToXServer();
    return m_connection && hasExtension(m_connection.get(), "XKEYBOARD") &&
           hasExtension(m_connection.get(), "XTEST");
}

void PrivacySettingsX11::open(const QUrl& pane) {
    const std::optional<PrivacyPane> wanted = paneOf(pane.query());
    if (!wanted)
        return;
    if (wanted == PrivacyPane::accessibility && !desktopDecides())
        return openHelp(QStringLiteral("accessibility"));
    openOneOf(settingsPrograms(*wanted, qEnvironmentVariable("XDG_CURRENT_DESKTOP")),
              *wanted == PrivacyPane::microphone ? QStringLiteral("microphone")
                                                 : QStringLiteral("accessibility"));
}

// No desktop's settings bring back an extension of the server, or reach programs of Wayland.
bool PrivacySettingsX11::desktopDecides() const {
    return accessibilityTrusted() && !isWaylandSession();
}

void PrivacySettingsX11::openHelp(const QString& section) {
    openOneOf({}, section);
}

void PrivacySettingsX11::openOneOf(ProgramChain::Commands settings, const QString& helpSection) {
    QUrl page = QUrl::fromLocalFile(m_helpPage);
    page.setFragment(helpSection);
    settings.push_back(openInBrowser(page));
    m_programs.open(settings, [this, page] { m_help.show(page); });
}

}  // namespace sayloft
