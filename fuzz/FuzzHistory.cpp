// SPDX-License-Identifier: MIT
// history.json: whatever stands there, the program goes on with a history.
#include "fuzz/support/FuzzInput.h"
#include "models/Paths.h"
#include "storage/History.h"
#include "storage/WholeFile.h"

#include <QTemporaryDir>

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir home;
    DATA_DIR = home.path();
    writeWholeFile(History::url(), fuzz::byteArray(fuzz::FuzzInput(data, size).rest()));
    History history;
    history.add(QStringLiteral("newest"));
    fuzz::require(history.items().size() <= 50);
    fuzz::require(History().items() == history.items());
    return 0;
}
