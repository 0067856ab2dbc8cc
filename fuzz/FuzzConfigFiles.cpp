// SPDX-License-Identifier: MIT
// config.json and its copies: a start reads and mends whatever users and crashes have left.
#include "fuzz/support/DataFolder.h"
#include "storage/Config.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::DataFolder folder;
    folder.fill(Config::url(), fuzz::FuzzInput(data, size));
    fuzz::start(Config::file(), Config::url());
    const Config config = Config::load();
    config.save();
    fuzz::require(Config::load() == config);
    fuzz::waitForDisk();
    fuzz::require(Config::load() == config);
    return 0;
}
