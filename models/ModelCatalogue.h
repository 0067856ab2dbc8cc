// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace sayloft {

/// Catalogue entry of a speech model.
struct ModelInfo {
    QString key;    ///< stable identifier, stored in the configuration
    QString file;   ///< file name on disk
    QString url;    ///< where it is downloaded from; empty for a model that is only ever bundled
    QString label;  ///< text shown to the user
};

/// Never empty; the first entry stands in for unknown keys. Fixed before main() and only read there
/// after, as the paths are.
extern std::vector<ModelInfo> MODELS;

/// The first directory of MODEL_SEARCH_DIRS that holds `file` wins. Existence is all that counts.
[[nodiscard]] std::optional<QString> existingModelPath(const QString& file);

/// The existing path, or else where a download puts the file.
[[nodiscard]] QString modelPath(const QString& file);

[[nodiscard]] const ModelInfo& modelInfo(const QString& key);

/// Whether the model's file is present anywhere, downloaded or not.
[[nodiscard]] bool modelDownloaded(const QString& key);

}  // namespace sayloft
