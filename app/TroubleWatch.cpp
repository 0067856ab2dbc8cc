// SPDX-License-Identifier: MIT
#include "app/TroubleWatch.h"

#include "models/Paths.h"
#include "platform/AudioInput.h"
#include "platform/TrayItem.h"
#include "storage/FolderProbe.h"
#include "storage/PrivateFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QTcpServer>

#include <algorithm>
#include <vector>

namespace sayloft {
namespace {

constexpr std::chrono::seconds soundReviewInterval(2);

bool hasMicrophone(const AudioInput& audioInput) {
    const std::vector<AudioDeviceId> devices = audioInput.devices();
    return audioInput.inputFormat(std::nullopt).sampleRate > 0 ||
           std::any_of(devices.begin(), devices.end(),
                       [&](AudioDeviceId device) { return audioInput.hasInput(device); });
}

/// Exists where the user knows that there is no tray: some desktops never have one, and a word
/// about it at every start would be a nuisance.
QString missingTrayTold() {
    return DATA_DIR + QStringLiteral("/no-tray-told");
}

bool isPortTaken() {
    QTcpServer probe;
    return !probe.listen(QHostAddress::LocalHost, 8090);
}

}  // namespace

TroubleWatch::TroubleWatch(Notifier& notifier, AudioInput& audioInput, TrayItem& tray,
                           std::chrono::milliseconds grace)
    : m_audioInput(audioInput), m_tray(tray), m_grace(grace), m_notices(notifier) {
    m_disk.setMaxThreadCount(1);
    m_disk.setExpiryTimeout(1000);
    m_soundReview.setInterval(soundReviewInterval);
    connect(&m_soundReview, &QTimer::timeout, this, [this] { reviewSound(); });
    m_notices.onChange = [this] {
        if (onReason)
            onReason();
    };
    m_notices.onAction = [this](Trouble trouble) {
        if (onRemedy)
            onRemedy(trouble);
    };
}

void TroubleWatch::launched() {
    m_tray.onShownChanged = [this] { trayChanged(); };
    reviewFiles();
    QTimer::singleShot(m_grace, this, [this] {
        reviewTray();
        reviewSound();
    });
}

void TroubleWatch::settingsRead(bool isPossible) {
    set(Trouble::settingsUnreadable, !isPossible);
}

void TroubleWatch::keysWatched(bool isPossible) {
    set(Trouble::keysOutOfReach, !isPossible);
}

void TroubleWatch::serverStarts(const QString& modelPath) {
    set(Trouble::helperMissing, !QFileInfo::exists(PARAKEET_SERVER_BIN));
    set(Trouble::modelMissing, !QFileInfo::exists(modelPath));
    set(Trouble::portTaken, false);
    set(Trouble::helperGone, false);
}

// A server that finds its port taken ends at once.
void TroubleWatch::serverGone() {
    const bool taken = isPortTaken();
    set(Trouble::portTaken, taken);
    set(Trouble::helperGone, !taken);
}

void TroubleWatch::strangerAtPort() {
    set(Trouble::portTaken, true);
}

void TroubleWatch::dictationBegins() {
    reviewSound();
    reviewFiles();
}

// The microphone may have gone in the middle, and a disk have become full by what was said.
void TroubleWatch::dictationEnded() {
    reviewSound();
    reviewFiles();
}

bool TroubleWatch::holds(Trouble trouble) const {
    const std::vector<Trouble> holding = m_notices.current();
    return std::find(holding.begin(), holding.end(), trouble) != holding.end();
}

QString TroubleWatch::reason() const {
    const std::vector<Trouble> holding = m_notices.current();
    return holding.empty() ? QString() : troubleText(holding.front()).phrase;
}

void TroubleWatch::reviewSound() {
    using Authorization = AudioInput::Authorization;
    const Authorization authorization = m_audioInput.authorization();
    const bool isGone = authorization == Authorization::notDetermined;
    const bool isRefused = authorization == Authorization::denied;
    const bool isDeaf = authorization == Authorization::authorized && !hasMicrophone(m_audioInput);
    set(Trouble::soundServerGone, isGone);
    set(Trouble::soundServerRefuses, isRefused);
    set(Trouble::noMicrophone, isDeaf);
    if (!isGone && !isRefused && !isDeaf)
        m_soundReview.stop();
    else if (!m_soundReview.isActive())
        m_soundReview.start();
}

void TroubleWatch::reviewTray() {
    m_trayMissing = !m_tray.isShown();
    if (!m_trayMissing) {
        QFile::remove(missingTrayTold());
        set(Trouble::noTrayHost, false);
        return;
    }
    if (QFile::exists(missingTrayTold()))
        return;
    ensureDataDir();
    static_cast<void>(QFile(missingTrayTold()).open(QIODevice::WriteOnly, ownersAlone));
    set(Trouble::noTrayHost, true);
}

void TroubleWatch::reviewFiles() {
    m_disk.start([this] {
        const FolderState state = tryFolder(TEMP_DIR);
        QMetaObject::invokeMethod(this, [this, state] {
            set(Trouble::diskFull, state == FolderState::full);
            set(Trouble::folderRefuses, state == FolderState::refuses);
        });
    });
}

// A panel that crashed is soon back.
void TroubleWatch::trayChanged() {
    if (m_tray.isShown())
        reviewTray();
    else
        QTimer::singleShot(m_grace, this, [this] { reviewTray(); });
}

void TroubleWatch::set(Trouble trouble, bool holds) {
    if (holds)
        m_notices.raise(trouble);
    else
        m_notices.clear(trouble);
}

}  // namespace sayloft
