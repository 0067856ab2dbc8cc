// SPDX-License-Identifier: MIT
#pragma once

namespace sayloft {

/// Once, at the start and before anything of it is read: closes the data folder to others, and
/// mends and logs what a crash, a power cut or a slip of the user has done to the settings and the
/// history. Whether the settings can be read; where they cannot, the defaults count.
bool mendStoredFiles();

}  // namespace sayloft
