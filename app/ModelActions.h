// SPDX-License-Identifier: MIT
#pragma once

#include "app/StatusItem.h"
#include "models/ModelCatalogue.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace sayloft {

struct Config;
class Downloader;
class Overlay;
class Recorder;
class Windows;

/// What the model actions ask of the program around them. Main thread.
class ModelHost {
public:
    virtual ~ModelHost() = default;

    virtual void setState(IconState state) = 0;
    virtual void buildMenu() = 0;
    virtual void restartServer() = 0;
    [[nodiscard]] virtual Overlay* configuredOverlay() = 0;  ///< may be null
    [[nodiscard]] virtual Windows* openWindows() = 0;        ///< may be null
};

/// What the actions work on; all of it outlives them.
struct ModelParts {
    Config& cfg;
    Downloader& downloader;
    Recorder& recorder;
};

/// What the windows do with models and with the configuration as a whole. Main thread.
class ModelActions : public QObject {
public:
    ModelActions(const ModelParts& parts, ModelHost& host);

    /// Removes what earlier runs have left of downloads that nothing will go on from, and of models
    /// that were deleted.
    void removeLeftovers();

    /// One download at a time: while one runs, another is dropped and its `done` never called. An
    /// address that is none fails at once, and no model can be downloaded afterwards. The bundled
    /// model is not downloaded.
    void downloadModel(const ModelInfo& info, std::function<void(bool)> done);

    /// Selects a model, downloads it where it is missing, and restarts the server with it.
    /// `then`, which may be empty, is called whatever comes of it.
    void setModel(const QString& key, std::function<void()> then = {});

    /// Neither the model in use nor the bundled one is deleted.
    void deleteModel(const QString& key);

    /// The server keeps the model that it was started with.
    void resetConfig();

    /// Takes effect on a later turn of the main loop.
    void applyOverlayConfig();

    [[nodiscard]] bool downloading() const { return m_downloadingKey.has_value(); }
    [[nodiscard]] const std::optional<QString>& downloadingKey() const { return m_downloadingKey; }
    [[nodiscard]] double downloadProgress() const { return m_downloadProgress; }

private:
    void downloaded(const ModelInfo& info, bool succeeded, const std::function<void(bool)>& done);
    void refreshWindows();

    ModelParts m_parts;
    ModelHost& m_host;
    std::optional<QString> m_downloadingKey;
    double m_downloadProgress = 0;  ///< of the running download, 0 to 1
};

}  // namespace sayloft
