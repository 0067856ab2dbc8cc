// SPDX-License-Identifier: MIT
// The text of history.json: whatever stands there, what is read of it can be saved.
#include "fuzz/support/SavedText.h"
#include "storage/History.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text = fuzz::byteArray(fuzz::FuzzInput(data, size).rest());
    static_cast<void>(isCutOffJson(text));
    const auto items = History::decode(text);
    if (!items)
        return 0;
    const QByteArray saved = History::encode(*items);
    fuzz::require(History::decode(saved) == items);
    fuzz::requireDamageToBeSeen(saved, size);
    return 0;
}
