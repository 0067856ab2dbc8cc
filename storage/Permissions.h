// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace sayloft {

class AudioInput;
class PrivacySettings;

/// What the user lets the program do. Nothing is remembered: every call asks afresh, so that a
/// grant takes effect at once. Main thread; the services must outlive it.
class Permissions {
public:
    Permissions(AudioInput& audioInput, PrivacySettings& privacy);

    [[nodiscard]] bool accessibilityGranted() const;
    [[nodiscard]] bool micGranted() const;

    /// Asks for the microphone where that question was never answered.
    void requestMicIfNotDetermined();

    /// What a "Grant" for the microphone does: asks where that question was never answered, and
    /// otherwise opens the pane. `answered` is called on the main thread once an answer is there,
    /// and only where there was a question.
    void grantMic(std::function<void()> answered);

    /// `anchor` is "Privacy_Accessibility" or "Privacy_Microphone"; one that makes no valid address
    /// opens nothing.
    void openPrivacyPane(const QString& anchor);

private:
    void openMicrophonePane();

    AudioInput& m_audioInput;
    PrivacySettings& m_privacy;
};

}  // namespace sayloft
