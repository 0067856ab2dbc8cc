// SPDX-License-Identifier: MIT
// config.json and its copies: users, older versions and crashes write them.
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
