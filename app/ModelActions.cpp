// SPDX-License-Identifier: MIT
#include "app/ModelActions.h"

#include "app/Windows.h"
#include "audio/Recorder.h"
#include "models/DeadDownloads.h"
#include "models/Downloader.h"
#include "models/FilesAside.h"
#include "models/Paths.h"
#include "models/StarterModel.h"
#include "overlay/Overlay.h"
#include "storage/Config.h"
#include "storage/Log.h"

#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <iterator>
#include <utility>

namespace sayloft {
namespace {

bool isBundled(const QString& key) {
    const auto starter = starterModel();
    return starter && starter->key == key;
}

QStringList modelFiles() {
    QStringList files;
    std::transform(MODELS.begin(), MODELS.end(), std::back_inserter(files),
                   [](const ModelInfo& model) { return model.file; });
    return files;
}

}  // namespace

ModelActions::ModelActions(const ModelParts& parts, ModelHost& host)
    : m_parts(parts), m_host(host) {}

void ModelActions::removeLeftovers() {
    const WantedFiles wanted{.chosen = modelInfo(m_parts.cfg.model).file, .offered = modelFiles()};
    const QStringList dead =
        deadDownloads(DOWNLOAD_MODELS_DIR, wanted) + filesAside(MODEL_SEARCH_DIRS);
    if (!dead.isEmpty())
        m_parts.downloader.remove(dead);
}

void ModelActions::downloadModel(const ModelInfo& info, std::function<void(bool)> done) {
    if (m_downloadingKey)
        return;
    if (!done)
        done = [](bool) {};
    if (isBundled(info.key))
        return done(false);
    m_downloadingKey = info.key;
    m_downloadProgress = 0;
    m_host.setState(IconState::warming);
    refreshWindows();

    const QPointer<ModelActions> self(this);
    m_parts.downloader.onProgress = [self](double fraction) {
        if (!self)
            return;
        self->m_downloadProgress = fraction;
        self->refreshWindows();
    };
    m_parts.downloader.onDone = [self, info, done](bool succeeded) {
        if (self)
            self->downloaded(info, succeeded, done);
    };
    const QUrl url(info.url, QUrl::StrictMode);
    // The download stays "running" on purpose: the catalogue is broken, and so is every retry.
    if (!url.isValid())
        return done(false);
    m_parts.downloader.download(url, modelPath(info.file));
}

void ModelActions::downloaded(const ModelInfo& info, bool succeeded,
                              const std::function<void(bool)>& done) {
    m_downloadingKey.reset();
    refreshWindows();
    logf(QStringLiteral("model download ") + info.key + QStringLiteral(": ") +
         (succeeded ? QStringLiteral("ok") : QStringLiteral("FAILED")));
    done(succeeded);
}

void ModelActions::setModel(const QString& key, std::function<void()> then) {
    m_parts.cfg.model = key;
    m_parts.cfg.save();
    m_host.buildMenu();
    refreshWindows();

    const ModelInfo& info = modelInfo(key);
    if (existingModelPath(info.file)) {
        m_host.restartServer();
        if (then)
            then();
        return;
    }
    const QPointer<ModelActions> self(this);
    downloadModel(info, [self, then = std::move(then)](bool succeeded) {
        if (succeeded && self)
            self->m_host.restartServer();
        if (then)
            then();
    });
}

void ModelActions::deleteModel(const QString& key) {
    if (key == m_parts.cfg.model || isBundled(key))
        return;
    if (const auto aside = putAside(modelPath(modelInfo(key).file)))
        m_parts.downloader.remove({*aside});
    logf(QStringLiteral("deleted model ") + key);
    refreshWindows();
    m_host.buildMenu();
}

void ModelActions::resetConfig() {
    m_parts.cfg = Config();
    m_parts.cfg.save();
    m_parts.recorder.deviceUID = m_parts.cfg.inputDeviceUID;
    m_parts.recorder.boost = m_parts.cfg.boostMic;
    applyOverlayConfig();
    m_host.buildMenu();
    if (Windows* windows = m_host.openWindows())
        windows->refreshSettings();
}

void ModelActions::applyOverlayConfig() {
    if (m_host.configuredOverlay() == nullptr)
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            const Config& cfg = m_parts.cfg;
            if (Overlay* overlay = m_host.configuredOverlay())
                overlay->configure(cfg.pillStyle == QStringLiteral("minimal"), cfg.animAppear,
                                   cfg.animHide, cfg.holdDuration);
        },
        Qt::QueuedConnection);
}

void ModelActions::refreshWindows() {
    if (Windows* windows = m_host.openWindows()) {
        windows->refreshSettings();
        windows->refreshOnboarding();
    }
}

}  // namespace sayloft
