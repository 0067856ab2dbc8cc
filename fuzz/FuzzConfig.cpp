// SPDX-License-Identifier: MIT
// config.json: users and older versions write it.
#include "fuzz/support/FuzzInput.h"
#include "storage/Config.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto config = Config::decode(fuzz::byteArray(fuzz::FuzzInput(data, size).rest()));
    if (config)
        fuzz::require(Config::decode(config->encode()) == config);
    return 0;
}
