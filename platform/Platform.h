// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace sayloft {

class AudioInput;
class Clipboard;
class KeyPoster;
class LoginItem;
class ModifierWatch;
class Notifier;
class PrivacySettings;
class SessionBusConnection;
class SystemSounds;
class TrayItem;
class WindowEffects;

/// The platform's services. Destroyed in reverse order: a later member may use an earlier one.
struct Platform {
    Platform();
    ~Platform();
    Platform(Platform&&) noexcept;
    Platform& operator=(Platform&&) = delete;

    std::unique_ptr<AudioInput> audioInput;
    std::unique_ptr<SystemSounds> sounds;
    std::unique_ptr<PrivacySettings> privacy;
    std::unique_ptr<Notifier> notifier;
    std::unique_ptr<ModifierWatch> modifierWatch;
    std::unique_ptr<Clipboard> clipboard;
    std::unique_ptr<KeyPoster> keyPoster;
    std::unique_ptr<TrayItem> trayItem;
    std::unique_ptr<WindowEffects> windowEffects;
    std::unique_ptr<LoginItem> loginItem;
};

/// The services of the system that the program runs on. Main thread, after the application object
/// exists; the connection outlives them.
[[nodiscard]] Platform loadPlatform(SessionBusConnection& connection);

}  // namespace sayloft
