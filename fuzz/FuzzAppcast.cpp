// SPDX-License-Identifier: MIT
// The feed of new versions: it comes from the network.
#include "fuzz/support/FuzzInput.h"
#include "updates/Appcast.h"
#include "updates/VersionOrder.h"

using namespace sayloft;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto releases = parseAppcast(fuzz::byteArray(fuzz::FuzzInput(data, size).rest()));
    if (!releases)
        return 0;
    const auto newest = newestOf(*releases);
    fuzz::require(newest.has_value() == !releases->empty());
    for (const Release& release : *releases) {
        fuzz::require(!release.version.isEmpty());
        fuzz::require(std::is_lteq(compareVersions(release.version, newest->version)));
    }
    return 0;
}
