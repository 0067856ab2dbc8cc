// SPDX-License-Identifier: MIT
#pragma once

#include "helper/Problem.h"

#include <string>
#include <vector>

namespace sayloft::helper {

/// Where parakeet.cpp's own server may lie, best place first: beside `executable` (the real path of
/// this program, in `<root>/<bundle>/Contents/Helpers`), then built in a source tree in `<root>`.
[[nodiscard]] std::vector<std::string> ggufServerPlaces(const std::string& executable);

/// Replaces this process with parakeet.cpp's own server: same process id, same process name (both
/// programs are files called parakeet-server), same arguments. Returns only when that failed.
/// `arguments` are this program's own, with its name first and no null pointer at the end.
[[nodiscard]] Problem handOverToGgufServer(const std::vector<char*>& arguments);

}  // namespace sayloft::helper
