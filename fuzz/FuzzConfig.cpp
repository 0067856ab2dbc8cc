// SPDX-License-Identifier: MIT
// The text of config.json: users and older versions write it, and crashes cut it off.
#include "fuzz/support/SavedText.h"
#include "storage/Config.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text = fuzz::byteArray(fuzz::FuzzInput(data, size).rest());
    static_cast<void>(isCutOffJson(text));
    const auto config = Config::decode(text);
    if (!config)
        return 0;
    const QByteArray saved = config->encode();
    fuzz::require(Config::decode(saved) == config);
    fuzz::requireDamageToBeSeen(saved, size);
    return 0;
}
