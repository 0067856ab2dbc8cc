// SPDX-License-Identifier: MIT
// A WAV file as any program on this machine may send it to the speech helper.
#include "fuzz/support/FuzzInput.h"
#include "helper/WavUpload.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file = fuzz::FuzzInput(data, size).rest();
    const auto parsed = helper::parseWav(file);
    if (const auto* samples = std::get_if<helper::Samples>(&parsed))
        fuzz::require(samples->size() * 2 <= file.size());
    else
        fuzz::require(!std::get<helper::Problem>(parsed).reason.empty());
    return 0;
}
