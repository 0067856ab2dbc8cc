// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft::test {

/// How often this program has closed a descriptor that was closed already: in another thread it may
/// be somebody else's by then. Only in programs that are linked with its source, which puts a
/// `close` before the system's.
[[nodiscard]] int strayCloses();

}  // namespace sayloft::test
