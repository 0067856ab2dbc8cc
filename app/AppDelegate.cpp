// SPDX-License-Identifier: MIT
#include "app/AppDelegate.h"

#include "models/ModelCatalogue.h"
#include "platform/AudioInput.h"
#include "platform/Clipboard.h"
#include "platform/KeyPoster.h"
#include "platform/ModifierWatch.h"
#include "platform/PrivacySettings.h"
#include "platform/SystemSounds.h"
#include "storage/Log.h"

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace sayloft {
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
    : cfg(Config::load()),
      m_platform(std::move(platform)),
      m_permissions(*m_platform.audioInput, *m_platform.privacy),
      m_recorder(*m_platform.audioInput),
      m_paster(*m_platform.clipboard, *m_platform.keyPoster),
      m_session({.cfg = cfg,
                 .recorder = m_recorder,
                 .transcriber = m_transcriber,
                 .paster = m_paster,
                 .history = m_history,
                 .sounds = *m_platform.sounds},
                *this) {
    m_platform.keyPoster->setMayReleaseHeldKeys(
        [this] { return !m_session.running().isRecording; });
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    setState(IconState::warming);
    buildMenu();
    applyOverlayConfig();
    m_recorder.deviceUID = cfg.inputDeviceUID;
    m_recorder.boost = cfg.boostMic;
    m_parakeet.onReady = [this] { setState(IconState::ready); };
    m_parakeet.start(modelPath(modelInfo(cfg.model).file));
    checkPermissions();
    installEventTap();
    openOnboardingIfNeeded();
}

void AppDelegate::applicationWillTerminate() {
    m_parakeet.stop();
    m_paster.restoreNow();
    m_platform.clipboard->handOver();
}

void AppDelegate::activate() {
    if (windows)
        windows->openSettings();
}

void AppDelegate::restartServer() {
    setState(IconState::warming);
    m_parakeet.restart(modelPath(modelInfo(cfg.model).file));
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

void AppDelegate::process(Mods held) {
    const ChordAction action =
        m_chords.process(held, m_session.running(), {cfg.dictateChords, cfg.dictateEnterChords});
    std::visit(Overloaded{
                   [](std::monostate) {},
                   [this](const BeginDictation& begin) {
                       m_session.beginRecording(begin.pressEnter, begin.chord);
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

void AppDelegate::installEventTap() {
    const bool installed = m_platform.modifierWatch->start(
        [this](std::uint64_t flags) { process(Mods::fromFlags(flags)); });
    logf(installed ? QStringLiteral("event tap installed OK")
                   : QStringLiteral("EVENT TAP FAILED — grant Accessibility to Sayloft"));
}

void AppDelegate::applyOverlayConfig() {
    if (overlay)
        overlay->configure(cfg.pillStyle == QStringLiteral("minimal"), cfg.animAppear, cfg.animHide,
                           cfg.holdDuration);
}

void AppDelegate::openOnboardingIfNeeded() {
    // The microphone is left out on purpose: a first dictation asks for it.
    if (m_permissions.accessibilityGranted() && modelDownloaded(cfg.model))
        return;
    if (windows)
        windows->openOnboarding();
}

void AppDelegate::storeCapturedChord(const ChordCaptured& captured) {
    auto& list = captured.list == Capturing::dictate ? cfg.dictateChords : cfg.dictateEnterChords;
    if (std::find(list.begin(), list.end(), captured.chord.rawValue) == list.end())
        list.push_back(captured.chord.rawValue);
    cfg.save();
    QTimer::singleShot(0, this, [this] {
        buildMenu();
        if (windows)
            windows->refreshSettings();
    });
}

bool AppDelegate::accessibilityTrusted() const {
    return m_permissions.accessibilityGranted();
}

bool AppDelegate::serverReady() const {
    return m_parakeet.ready();
}

}  // namespace sayloft
