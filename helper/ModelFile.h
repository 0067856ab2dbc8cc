// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"

#include <string>
#include <string_view>
#include <variant>

namespace sayloft::helper {

/// A model in GGUF form. Only its first four bytes have been looked at.
struct GgufModel {};

/// The parts of a PocketSphinx model, by absolute path.
struct StarterModel {
    std::string acousticModel;  ///< a directory
    std::string languageModel;  ///< a file
    std::string dictionary;     ///< a file
};

using ModelFile = std::variant<GgufModel, StarterModel>;

/// Looks at what kind of model `path` holds. Reads 64 KiB at most, whatever the size of the file,
/// and never waits on something that is not a plain file.
[[nodiscard]] Result<ModelFile> inspectModelFile(const std::string& path);

/// Reads the text of a starter model: the line "sayloft starter model 1", then `name = value` lines
/// for acoustic-model, language-model and dictionary, each once. Empty lines and lines that begin
/// with # say nothing.
[[nodiscard]] Result<StarterModel> parseStarterModel(std::string_view text);

/// Whether the files that `model` names are there; the reason says which is not.
[[nodiscard]] Result<std::monostate> checkStarterModel(const StarterModel& model);

}  // namespace sayloft::helper
