// SPDX-License-Identifier: MIT
#include "bench/BenchMain.h"

#include <QCoreApplication>

#include <cstdio>
#include <exception>

namespace sayloft::bench {

int benchMain(int argc, char** argv, const std::function<void()>& bench) {
    const QCoreApplication application(argc, argv);
    return benchMainWithoutApplication(argv[0], bench);
}

int benchMainWithoutApplication(const char* program, const std::function<void()>& bench) {
    try {
        bench();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", program, error.what());
        return 1;
    }
    return 0;
}

}  // namespace sayloft::bench
