// SPDX-License-Identifier: MIT
#pragma once

#include "app/TroubleNotices.h"

#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

#include <chrono>
#include <functional>

namespace sayloft {

class AudioInput;
class Notifier;
class TrayItem;

/// Knows what keeps dictation from working. That there is no tray is told once and not at the next
/// starts, until there has been one. Main thread; what it is given outlives it.
class TroubleWatch : public QObject {
public:
    /// A tray and a sound server may take as long as `grace` to come up with the session.
    TroubleWatch(Notifier& notifier, AudioInput& audioInput, TrayItem& tray,
                 std::chrono::milliseconds grace = std::chrono::seconds(10));

    void launched();
    /// They are read once, so that a save does not mend what was not read.
    void settingsRead(bool isPossible);
    void keysWatched(bool isPossible);
    /// The server is about to be started with this model.
    void serverStarts(const QString& modelPath);
    void serverGone();
    /// Another program listens where the server should.
    void strangerAtPort();
    /// A dictation begins, so that a sound server is needed now.
    void dictationBegins();
    void dictationEnded();

    [[nodiscard]] bool holds(Trouble trouble) const;
    /// Also where that is no news to the user.
    [[nodiscard]] bool trayMissing() const { return m_trayMissing; }
    /// The most severe cause that holds in a few words; empty when there is none.
    [[nodiscard]] QString reason() const;
    /// Called when it changes.
    std::function<void()> onReason;
    /// Called when the user asks to see what helps.
    std::function<void(Trouble)> onRemedy;

private:
    void reviewSound();
    void reviewTray();
    void reviewFiles();
    void trayChanged();
    void set(Trouble trouble, bool holds);

    AudioInput& m_audioInput;
    TrayItem& m_tray;
    const std::chrono::milliseconds m_grace;
    TroubleNotices m_notices;
    bool m_trayMissing = false;
    QTimer m_soundReview;  ///< runs while nothing can be recorded
    QThreadPool m_disk;    ///< one thread: a disk may stall
};

}  // namespace sayloft
