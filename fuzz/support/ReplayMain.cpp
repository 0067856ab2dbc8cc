// SPDX-License-Identifier: MIT
// Stands for the fuzzing engine where there is none: runs the inputs that are there once each.
#include "fuzz/support/FuzzInput.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace {

std::set<std::string> inputsIn(const char* folder) {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.insert(entry.path().string());
    return files;
}

void replay(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    const std::string input = content.str();
    std::printf("%s\n", path.c_str());
    std::fflush(stdout);  // the last line names the input that ended the program
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "Usage: %s <folder of inputs>\n", argv[0]);
        return 2;
    }
    const std::set<std::string> files = inputsIn(argv[1]);
    for (const std::string& file : files)
        replay(file);
    return files.empty() ? 1 : 0;
}
