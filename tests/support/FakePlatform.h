// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Clipboard.h"
#include "platform/KeyPoster.h"
#include "platform/LoginItem.h"
#include "platform/ModifierWatch.h"
#include "platform/Notifier.h"
#include "platform/Platform.h"
#include "platform/PrivacySettings.h"
#include "platform/SystemSounds.h"
#include "platform/TrayItem.h"
#include "tests/support/FakeAudioInput.h"

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace sayloft::test {

/// Keys that the test holds, without a keyboard.
class FakeModifierWatch : public ModifierWatch {
public:
    [[nodiscard]] bool start(FlagsChanged flagsChanged) override;
    void beginInjection() override {}
    void endInjection() override {}

    void hold(std::uint64_t flags) { m_flagsChanged(flags); }

    bool allowed = true;

private:
    FlagsChanged m_flagsChanged;
};

class FakePrivacySettings : public PrivacySettings {
public:
    [[nodiscard]] bool accessibilityTrusted() const override { return trusted; }
    void open(const QUrl& pane) override { opened.push_back(pane.toString()); }

    void openHelp(const QString& section) override { helped.push_back(section); }

    bool trusted = true;
    std::vector<QString> opened;
    std::vector<QString> helped;
};

/// A desktop that shows every message until it is withdrawn.
class FakeNotifier : public Notifier {
public:
    void show(Notification notification) override;
    void withdraw(const QString& key) override;

    std::vector<Notification> visible;
    int shown = 0;  ///< all that ever were
};

class FakeSystemSounds : public SystemSounds {
public:
    void play(const QString& name) override { played.push_back(name); }

    std::vector<QString> played;
};

/// A clipboard that nobody else uses and that is read at once.
class FakeClipboard : public Clipboard {
public:
    void prepareSnapshot() override {}
    void takeSnapshot(SnapshotTaken taken) override;
    void setText(const QString& text, ClipboardStay /*stay*/) override { texts.push_back(text); }
    void whenTextFetched(std::chrono::milliseconds deadline, TextFetched fetched) override;
    void restore(const ClipboardSnapshot& snapshot) override { restored.push_back(snapshot); }
    void handOver() override { handedOver = true; }

    std::vector<QString> texts;  ///< everything that was set, in order
    std::vector<ClipboardSnapshot> restored;
    bool handedOver = false;
};

class FakeKeyPoster : public KeyPoster {
public:
    void postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) override;

    std::vector<std::pair<std::uint16_t, std::uint64_t>> keys;
};

/// A system that starts what it is told to, or refuses.
class FakeLoginItem : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }
    [[nodiscard]] std::optional<QString> setEnabled(bool wanted) override;

    [[nodiscard]] std::optional<QString> followProgram() override;

    bool enabled = false;
    int follows = 0;
    std::optional<QString> refusal;  ///< what it says instead of obeying
};

/// A tray that only remembers.
class FakeTrayItem : public TrayItem {
public:
    void setLook(const TrayLook& look) override { looks.push_back(look); }
    void setMenu(Menu newMenu) override { menu = std::move(newMenu); }
    [[nodiscard]] bool isShown() const override { return isThere; }

    void setShown(bool shown) {
        isThere = shown;
        onShownChanged();
    }

    bool isThere = true;
    std::vector<TrayLook> looks;  ///< everything that was shown, in order
    Menu menu;
};

/// All services as fakes. `platform()` gives them away; the references stay valid as long as the
/// platform lives.
class FakePlatform {
public:
    FakePlatform();

    [[nodiscard]] Platform platform() { return std::move(m_platform); }

private:
    Platform m_platform;

public:
    FakeAudioInput& audio;
    FakeSystemSounds& sounds;
    FakePrivacySettings& privacy;
    FakeNotifier& notifier;
    FakeModifierWatch& modifierWatch;
    FakeClipboard& clipboard;
    FakeKeyPoster& keyPoster;
    FakeTrayItem& trayItem;
    FakeLoginItem& loginItem;
};

}  // namespace sayloft::test
