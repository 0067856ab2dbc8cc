// SPDX-License-Identifier: MIT
#include "tests/support/FakePlatform.h"

#include "platform/WindowEffects.h"

#include <algorithm>

namespace sayloft::test {
namespace {

/// Puts a new fake into its place in the platform and returns it under its own type.
template <typename Fake, typename Interface>
Fake& install(std::unique_ptr<Interface>& place) {
    auto fake = std::make_unique<Fake>();
    Fake& reference = *fake;
    place = std::move(fake);
    return reference;
}

}  // namespace

bool FakeModifierWatch::start(FlagsChanged flagsChanged) {
    m_flagsChanged = std::move(flagsChanged);
    return allowed;
}

void FakeNotifier::show(Notification notification) {
    withdraw(notification.key);
    visible.push_back(std::move(notification));
    ++shown;
}

void FakeNotifier::withdraw(const QString& key) {
    const auto hasKey = [&key](const Notification& each) { return each.key == key; };
    visible.erase(std::remove_if(visible.begin(), visible.end(), hasKey), visible.end());
}

void FakeClipboard::takeSnapshot(SnapshotTaken taken) {
    taken(ClipboardSnapshot{{{{"text/plain", "what the user had copied"}}}});
}

void FakeClipboard::whenTextFetched(std::chrono::milliseconds /*deadline*/, TextFetched fetched) {
    fetched();
}

void FakeKeyPoster::postKey(std::uint16_t virtualKey, std::uint64_t flags, Posted posted) {
    keys.emplace_back(virtualKey, flags);
    posted();
}

std::optional<QString> FakeLoginItem::setEnabled(bool wanted) {
    if (!refusal)
        enabled = wanted;
    return refusal;
}

std::optional<QString> FakeLoginItem::followProgram() {
    ++follows;
    return refusal;
}

FakePlatform::FakePlatform()
    : audio(install<FakeAudioInput>(m_platform.audioInput)),
      sounds(install<FakeSystemSounds>(m_platform.sounds)),
      privacy(install<FakePrivacySettings>(m_platform.privacy)),
      notifier(install<FakeNotifier>(m_platform.notifier)),
      modifierWatch(install<FakeModifierWatch>(m_platform.modifierWatch)),
      clipboard(install<FakeClipboard>(m_platform.clipboard)),
      keyPoster(install<FakeKeyPoster>(m_platform.keyPoster)),
      trayItem(install<FakeTrayItem>(m_platform.trayItem)),
      loginItem(install<FakeLoginItem>(m_platform.loginItem)) {
    audio.defaultFormat = {.sampleRate = 48000, .channels = 1};
}

}  // namespace sayloft::test
