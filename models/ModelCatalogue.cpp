// SPDX-License-Identifier: MIT
#include "models/ModelCatalogue.h"

#include "models/Paths.h"
#include "models/StarterModel.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace sayloft {
namespace {

QString parakeetUrl(const QString& remoteFile) {
    return QStringLiteral("https://huggingface.co/mudler/parakeet-cpp-gguf/resolve/main/") +
           remoteFile;
}

std::vector<ModelInfo> catalogue() {
    std::vector<ModelInfo> models{
        {QStringLiteral("multilingual"), QStringLiteral("parakeet-tdt-0.6b-v3-f16.gguf"),
         parakeetUrl(QStringLiteral("tdt-0.6b-v3-f16.gguf")),
         QStringLiteral("Multilingual (v3) — 25 languages")},
        {QStringLiteral("english"), QStringLiteral("parakeet-tdt-0.6b-v2-f16.gguf"),
         parakeetUrl(QStringLiteral("tdt-0.6b-v2-f16.gguf")),
         QStringLiteral("English only (v2) — best for English")},
    };
    if (auto starter = starterModel())
        models.push_back(std::move(*starter));
    return models;
}

}  // namespace

std::vector<ModelInfo> MODELS = catalogue();

std::optional<QString> existingModelPath(const QString& file) {
    for (const QString& directory : MODEL_SEARCH_DIRS) {
        QString path = directory + QLatin1Char('/') + file;
        if (QFileInfo::exists(path))
            return path;
    }
    return std::nullopt;
}

QString modelPath(const QString& file) {
    return existingModelPath(file).value_or(DOWNLOAD_MODELS_DIR + QLatin1Char('/') + file);
}

const ModelInfo& modelInfo(const QString& key) {
    const auto found = std::find_if(MODELS.begin(), MODELS.end(),
                                    [&](const ModelInfo& model) { return model.key == key; });
    return found == MODELS.end() ? MODELS.front() : *found;
}

bool modelDownloaded(const QString& key) {
    return existingModelPath(modelInfo(key).file).has_value();
}

}  // namespace sayloft
