// SPDX-License-Identifier: MIT
// Stands for parakeet.cpp's own server: says who it is and what it was given, a line each, and
// ends.
#include <cstdio>
#include <fstream>
#include <string>

#include <unistd.h>

int main(int argc, char** argv) {
    std::string name;
    std::getline(std::ifstream("/proc/self/comm"), name);
    std::printf("%d\n%s\n", static_cast<int>(::getpid()), name.c_str());
    for (int i = 0; i < argc; ++i)
        std::printf("%s\n", argv[i]);
    return 0;
}
