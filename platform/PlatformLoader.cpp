// SPDX-License-Identifier: MIT
#include "platform/Platform.h"

#include "models/Paths.h"
#include "platform/SessionBusConnection.h"

#if defined(__linux__)
#include "platform/linux/AudioInputPulse.h"
#include "platform/linux/ClipboardX11.h"
#include "platform/linux/KeyPosterX11.h"
#include "platform/linux/LoginItemXdg.h"
#include "platform/linux/ModifierWatchX11.h"
#include "platform/linux/NotifierFreedesktop.h"
#include "platform/linux/PrivacySettingsX11.h"
#include "platform/linux/SystemSoundsPulse.h"
#include "platform/linux/TrayItemSni.h"
#include "platform/linux/WindowEffectsX11.h"
#else
#error "There is no backend for this system yet."
#endif

namespace sayloft {

Platform loadPlatform(SessionBusConnection& connection) {
    auto modifierWatch = std::make_unique<ModifierWatchX11>();
    auto clipboard = std::make_unique<ClipboardX11>();

    Platform platform;
    platform.audioInput = std::make_unique<AudioInputPulse>();
    platform.sounds = std::make_unique<SystemSoundsPulse>(
        BUNDLE_DIR + QStringLiteral("/Contents/Resources/sounds"));
    platform.privacy = std::make_unique<PrivacySettingsX11>(
        BUNDLE_DIR + QStringLiteral("/Contents/Resources/help/permissions.html"));
    platform.notifier = std::make_unique<NotifierFreedesktop>(connection);
    platform.keyPoster = std::make_unique<KeyPosterX11>(
        *modifierWatch,
        KeyPosterX11::PasteOffer{
            .onClipboard = [&agent =
                                *clipboard](auto ready) { agent.whenOffered(std::move(ready)); },
            .onPrimary = [&agent =
                              *clipboard](auto ready) { agent.offerOnPrimary(std::move(ready)); }});
    platform.modifierWatch = std::move(modifierWatch);
    platform.clipboard = std::move(clipboard);
    platform.trayItem = std::make_unique<TrayItemSni>(
        connection, BUNDLE_DIR + QStringLiteral("/Contents/Resources/images"));
    platform.loginItem =
        std::make_unique<LoginItemXdg>(BUNDLE_DIR + QStringLiteral("/Contents/bin/sayloft"));
    platform.windowEffects = std::make_unique<WindowEffectsX11>();
    return platform;
}

}  // namespace sayloft
