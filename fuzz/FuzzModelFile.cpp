// SPDX-License-Identifier: MIT
// A model file: users put them where they like.
#include "fuzz/support/FuzzInput.h"
#include "fuzz/support/MemoryFile.h"
#include "helper/ModelFile.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFile file;
    file.setContent(fuzz::FuzzInput(data, size).rest());
    const auto inspected = helper::inspectModelFile(file.path());
    const auto* model = std::get_if<helper::ModelFile>(&inspected);
    const auto* starter = model == nullptr ? nullptr : std::get_if<helper::StarterModel>(model);
    if (starter == nullptr)
        return 0;
    for (const auto& path : {starter->acousticModel, starter->languageModel, starter->dictionary})
        fuzz::require(path.starts_with('/') && path.find('\0') == std::string::npos);
    return 0;
}
