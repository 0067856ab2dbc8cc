// SPDX-License-Identifier: MIT
#pragma once

#include "app/ChordMachine.h"
#include "app/DictationSession.h"
#include "app/ModelActions.h"
#include "app/PatientRestart.h"
#include "app/StatusItem.h"
#include "app/TroubleWatch.h"
#include "app/Windows.h"
#include "audio/InputDevices.h"
#include "audio/Recorder.h"
#include "models/Downloader.h"
#include "overlay/Overlay.h"
#include "platform/Platform.h"
#include "speech/ParakeetServer.h"
#include "speech/Paster.h"
#include "speech/Transcriber.h"
#include "storage/Config.h"
#include "storage/History.h"
#include "storage/Permissions.h"

#include <QObject>

#include <memory>
#include <vector>

namespace sayloft {

class LoginItem;
class Updater;

/// Owns and wires every long-lived object, and orders start-up and shutdown. Main thread.
class AppDelegate : public QObject, private DictationHost, private ModelHost {
public:
    explicit AppDelegate(Platform platform);
    ~AppDelegate() override;
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void applicationDidFinishLaunching();

    /// Ends the speech server and waits for it; a running download is given up. Nothing of the
    /// controller may be used afterwards.
    void applicationWillTerminate();

    /// Another copy of the program was started: this one comes to the front.
    void activate();

    /// Restarts the speech server with the configured model, without waiting for it. A dictation
    /// that it is transcribing may end first.
    void restartServer() override { m_restart.request(); }
    void checkPermissions();
    void quit();

    /// Puts the whole transcript on the clipboard, for good.
    void copyHistoryItem(const QString& transcript);
    void clearHistory();
    void openSettings();
    void openDict();
    void checkForUpdates();

    /// `held` is the complete set of modifiers that are down.
    void process(Mods held);
    void startCapture(Capturing list);

    /// Takes effect on a later turn of the main loop, in the order of the calls.
    void setState(IconState state) override;
    void buildMenu() override;

private:
    const bool m_areSettingsRead;  ///< mended first, then read

public:
    Config cfg;

    // What the user sees; each may be absent.
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<Overlay> overlay;
    std::unique_ptr<Windows> windows;

    [[nodiscard]] const ChordMachine& chords() const { return m_chords; }
    [[nodiscard]] const DictationSession& session() const { return m_session; }
    [[nodiscard]] Recorder& recorder() { return m_recorder; }
    [[nodiscard]] ModelActions& models() { return m_models; }
    [[nodiscard]] ParakeetServer& parakeet() { return m_parakeet; }
    [[nodiscard]] History& history() { return m_history; }
    [[nodiscard]] Permissions& permissions() { return m_permissions; }
    [[nodiscard]] LoginItem& loginItem() { return *m_platform.loginItem; }
    [[nodiscard]] std::vector<InputDevice> inputDeviceList() const;
    /// No tray has shown the icon for longer than one takes to come up.
    [[nodiscard]] bool trayMissing() const { return m_troubles.trayMissing(); }

private:
    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem();
    void restartServerNow();
    void installEventTap();
    void createOverlay();
    void openOnboardingIfNeeded();
    void followLoginItem();
    void help(Trouble trouble);
    void showReason();
    void storeCapturedChord(const ChordCaptured& captured);

    [[nodiscard]] Overlay* dictationOverlay() override { return overlay.get(); }
    [[nodiscard]] bool accessibilityTrusted() const override;
    [[nodiscard]] bool serverReady() const override { return m_parakeet.ready(); }
    void dictationEnded() override;
    [[nodiscard]] Overlay* configuredOverlay() override { return overlay.get(); }
    [[nodiscard]] Windows* openWindows() override { return windows.get(); }

    QString m_reason;  ///< that the status item shows
    Platform m_platform;
    Permissions m_permissions;
    TroubleWatch m_troubles;
    Recorder m_recorder;
    Transcriber m_transcriber;
    Paster m_paster;
    ParakeetServer m_parakeet;
    History m_history;
    ChordMachine m_chords;
    Downloader m_downloader;
    ModelActions m_models;
    std::unique_ptr<Updater> m_updater;  ///< made on first use
    // Late, so that it is destroyed early: its threads use the objects above.
    DictationSession m_session;
    PatientRestart m_restart;
};

}  // namespace sayloft
