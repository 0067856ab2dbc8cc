// SPDX-License-Identifier: MIT
#include "storage/Permissions.h"

#include "platform/AudioInput.h"
#include "platform/PrivacySettings.h"

#include <utility>

namespace sayloft {

Permissions::Permissions(AudioInput& audioInput, PrivacySettings& privacy)
    : m_audioInput(audioInput), m_privacy(privacy) {}

bool Permissions::accessibilityGranted() const {
    return m_privacy.accessibilityTrusted();
}

bool Permissions::micGranted() const {
    return m_audioInput.authorization() == AudioInput::Authorization::authorized;
}

void Permissions::requestMicIfNotDetermined() {
    if (m_audioInput.authorization() == AudioInput::Authorization::notDetermined)
        m_audioInput.requestAccess([](bool) {});
}

void Permissions::grantMic(std::function<void()> answered) {
    using Authorization = AudioInput::Authorization;
    if (m_audioInput.authorization() != Authorization::notDetermined)
        return openMicrophonePane();
    m_audioInput.requestAccess([this, answered = std::move(answered)](bool) {
        // Where nobody was there to be asked, such as a sound server, the pane says what helps.
        if (m_audioInput.authorization() == Authorization::notDetermined)
            openMicrophonePane();
        answered();
    });
}

void Permissions::openMicrophonePane() {
    openPrivacyPane(QStringLiteral("Privacy_Microphone"));
}

void Permissions::openPrivacyPane(const QString& anchor) {
    const QUrl pane(
        QStringLiteral("x-apple.systempreferences:com.apple.preference.security?") + anchor,
        QUrl::StrictMode);
    if (pane.isValid())
        m_privacy.open(pane);
}

}  // namespace sayloft
