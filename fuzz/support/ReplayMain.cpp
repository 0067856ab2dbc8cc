// SPDX-License-Identifier: MIT
// Stands for the fuzzing engine where there is none: runs the inputs that are there once each.
#include "fuzz/support/FuzzInput.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Files = std::vector<std::filesystem::path>;

Files inputsIn(const std::filesystem::path& folder) {
    Files files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);  // the last line names the input that ended the program
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s <folder of inputs>\n", argv[0]);
        return 2;
    }
    const Files files = inputsIn(argv[1]);
    for (const auto& file : files)
        replay(file);
    return files.empty() ? 1 : 0;
}
