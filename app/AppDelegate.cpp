// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "app/CapturedChords.h"
#include "app/StatusMenu.h"
#include "audio/FailedRecording.h"
#include "models/ModelCatalogue.h"
#include "overlay/PillOverlay.h"
#include "platform/AudioInput.h"
#include "platform/Clipboard.h"
#include "platform/KeyPoster.h"
#include "platform/LoginItem.h"
#include "platform/ModifierWatch.h"
#include "platform/Notifier.h"
#include "platform/PrivacySettings.h"
#include "platform/SystemSounds.h"
#include "platform/TrayItem.h"
#include "platform/WindowEffects.h"
#include "storage/LateSaves.h"
#include "storage/Log.h"
#include "storage/StoredFiles.h"
#include "updates/Updater.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>

#include <utility>

namespace sayloft {

using namespace std::chrono_literals;

namespace {

template <typename... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
// WORKAROUND: clang 14, which clang-tidy reads us with, cannot deduce an aggregate's types itself.
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

}  // namespace

AppDelegate::AppDelegate(Platform platform)
    : m_areSettingsRead(mendStoredFiles()),
      cfg(Config::load()),
      m_platform(std::move(platform)),
      m_permissions(*m_platform.audioInput, *m_platform.privacy),
      m_troubles(*m_platform.notifier, *m_platform.audioInput, *m_platform.trayItem),
      m_recorder(*m_platform.audioInput),
      m_transcriber(Transcriber::endpoint(), {}, [this] { return m_parakeet.hasPort(); }),
      m_paster(*m_platform.clipboard, *m_platform.keyPoster),
      m_models({.cfg = cfg, .downloader = m_downloader, .recorder = m_recorder}, *this),
      m_session({.cfg = cfg,
                 .recorder = m_recorder,
                 .transcriber = m_transcriber,
                 .paster = m_paster,
                 .history = m_history,
                 .sounds = *m_platform.sounds},
                *this),
      m_restart([this] { return m_parakeet.ready() && m_session.isTranscribing(); },
                [this] { restartServerNow(); }) {
    statusItem = makeStatusItem();
    m_troubles.onReason = [this] { showReason(); };
    m_troubles.onRemedy = [this](Trouble trouble) { help(trouble); };
    m_platform.keyPoster->setMayReleaseHeldKeys(
        [this] { return !m_session.running().isRecording; });
}

// The pill uses the platform, which goes before it otherwise.
AppDelegate::~AppDelegate() {
    overlay.reset();
}

void AppDelegate::applicationDidFinishLaunching() {
    setState(IconState::warming);
    buildMenu();
    createOverlay();
    m_models.applyOverlayConfig();
    m_recorder.deviceUID = cfg.inputDeviceUID;
    m_recorder.boost = cfg.boostMic;
    m_parakeet.onReady = [this] { setState(IconState::ready); };
    m_parakeet.onGone = [this] { m_troubles.serverGone(); };
    m_parakeet.onStranger = [this] { m_troubles.strangerAtPort(); };
    const QString model = modelPath(modelInfo(cfg.model).file);
    m_troubles.settingsRead(m_areSettingsRead);
    m_troubles.serverStarts(model);
    m_parakeet.start(model);
    checkPermissions();
    installEventTap();
    m_models.removeLeftovers();
    followLoginItem();
    openOnboardingIfNeeded();
    m_troubles.launched();
    showReason();
}

void AppDelegate::applicationWillTerminate() {
    m_restart.cancel();
    m_session.giveUp();
    saveWhatIsLate();
    m_parakeet.stop();
    m_downloader.stop();
    m_paster.restoreForGood();
    m_platform.clipboard->handOver();
    KeptFile::waitForDisk(1s);
}

void AppDelegate::activate() {
    if (windows)
        windows->openSettings();
}

void AppDelegate::restartServerNow() {
    setState(IconState::warming);
    const QString model = modelPath(modelInfo(cfg.model).file);
    m_troubles.serverStarts(model);
    m_parakeet.restart(model);
}

void AppDelegate::checkPermissions() {
    m_permissions.requestMicIfNotDetermined();
    logf(QStringLiteral("accessibility ") + (m_permissions.accessibilityGranted()
                                                 ? QStringLiteral("granted")
                                                 : QStringLiteral("missing")));
}

void AppDelegate::quit() {
    QCoreApplication::quit();
}

void AppDelegate::copyHistoryItem(const QString& transcript) {
    m_paster.copy(transcript);
}

void AppDelegate::clearHistory() {
    m_history.clear();
    buildMenu();
}

// As long as there is no window, the file.
void AppDelegate::openSettings() {
    if (windows) {
        windows->openSettings();
        return;
    }
    if (!QFileInfo::exists(Config::url()))
        cfg.save();
    QDesktopServices::openUrl(QUrl::fromLocalFile(Config::url()));
}

void AppDelegate::openDict() {
    if (windows)
        windows->openDict();
}

std::vector<InputDevice> AppDelegate::inputDeviceList() const {
    return InputDevices(*m_platform.audioInput).inputDeviceList();
}

void AppDelegate::checkForUpdates() {
    if (!m_updater)
        m_updater = std::make_unique<Updater>(builtInUpdateSource());
    m_updater->checkForUpdates();
}

void AppDelegate::process(Mods held) {
    const ChordAction action =
        m_chords.process(held, m_session.running(), {cfg.dictateChords, cfg.dictateEnterChords});
    std::visit(Overloaded{
                   [](std::monostate) {},
                   [this](const BeginDictation& begin) {
                       m_session.beginRecording(begin.pressEnter, begin.chord);
                       m_troubles.dictationBegins();
                   },
                   [this](EndDictation) { m_session.endRecording(); },
                   [this](const ChordCaptured& captured) { storeCapturedChord(captured); },
               },
               action);
}

void AppDelegate::startCapture(Capturing list) {
    m_chords.startCapture(list);
    buildMenu();
    if (windows)
        windows->refreshSettings();
}

void AppDelegate::setState(IconState state) {
    QMetaObject::invokeMethod(
        this,
        [this, state] {
            if (statusItem)
                statusItem->setState(state);
        },
        Qt::QueuedConnection);
}

void AppDelegate::buildMenu() {
    if (statusItem)
        statusItem->buildMenu();
}

std::unique_ptr<StatusItem> AppDelegate::makeStatusItem() {
    return std::make_unique<StatusMenu>(
        *m_platform.trayItem, cfg, m_history,
        StatusMenuActions{
            .copyHistoryItem = [this](const QString& transcript) { copyHistoryItem(transcript); },
            .clearHistory = [this] { clearHistory(); },
            .openSettings = [this] { openSettings(); },
            .checkForUpdates = [this] { checkForUpdates(); },
            .quit = [this] { quit(); }});
}

void AppDelegate::showReason() {
    if (!statusItem)
        return;
    QStringList reasons;
    if (const QString trouble = m_troubles.reason(); !trouble.isEmpty())
        reasons.append(trouble);
    if (FailedRecording::isKept())
        reasons.append(QStringLiteral("recording kept in ~/.sayloft/") +
                       QFileInfo(FailedRecording::file()).fileName());
    const QString reason = reasons.join(QStringLiteral("; "));
    if (std::exchange(m_reason, reason) != reason)
        statusItem->setReason(reason);
}

void AppDelegate::installEventTap() {
    const bool installed = m_platform.modifierWatch->start(
        [this](std::uint64_t flags) { process(Mods::fromFlags(flags)); });
    m_troubles.keysWatched(installed && m_permissions.accessibilityGranted());
    logf(installed ? QStringLiteral("event tap installed OK")
                   : QStringLiteral("EVENT TAP FAILED — grant Accessibility to Sayloft"));
}

void AppDelegate::createOverlay() {
    if (m_platform.windowEffects && !overlay)
        overlay = std::make_unique<PillOverlay>([this] { return m_recorder.level(); },
                                                *m_platform.windowEffects);
}

void AppDelegate::openOnboardingIfNeeded() {
    // The microphone is left out on purpose: a first dictation asks for it.
    if (m_permissions.accessibilityGranted() && modelDownloaded(cfg.model))
        return;
    if (windows)
        windows->openOnboarding();
}

void AppDelegate::followLoginItem() {
    if (const auto error = m_platform.loginItem->followProgram())
        logf(QStringLiteral("login item not updated: ") + *error);
}

// The desktop's settings mend neither the keyboard nor the sound server.
void AppDelegate::help(Trouble trouble) {
    switch (trouble) {
        case Trouble::keysOutOfReach:
            m_platform.privacy->openHelp(QStringLiteral("accessibility"));
            return;
        case Trouble::soundServerGone:
        case Trouble::soundServerRefuses:
            m_platform.privacy->openHelp(QStringLiteral("sound-server"));
            return;
        case Trouble::noMicrophone:
            m_permissions.openPrivacyPane(QStringLiteral("Privacy_Microphone"));
            return;
        default:
            openSettings();
    }
}

void AppDelegate::storeCapturedChord(const ChordCaptured& captured) {
    addCapturedChord(cfg, captured);
    cfg.save();
    QTimer::singleShot(0, this, [this] {
        buildMenu();
        if (windows)
            windows->refreshSettings();
    });
}

void AppDelegate::dictationEnded() {
    m_restart.review();
    saveWhatIsLate();
    m_troubles.dictationEnded();
    showReason();
}

bool AppDelegate::accessibilityTrusted() const {
    return m_permissions.accessibilityGranted();
}

}  // namespace sayloft
