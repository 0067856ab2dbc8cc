// SPDX-License-Identifier: MIT
// history.json and its copies: whatever stands there, the program goes on with a history.
#include "fuzz/support/DataFolder.h"
#include "storage/History.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::DataFolder folder;
    folder.fill(History::url(), fuzz::FuzzInput(data, size));
    fuzz::start(History::file(), History::url());
    History history;
    history.add(QStringLiteral("newest"));
    fuzz::require(history.items().size() <= 50);
    fuzz::require(History().items() == history.items());
    fuzz::waitForDisk();
    fuzz::require(History().items() == history.items());
    return 0;
}
