// SPDX-License-Identifier: MIT
// Starts as the program does, saves the settings and the history once for every number, logs that
// and waits for the disk. What is saved is made from its number. A file may not become larger than
// its limit says, which is as if the disk were full from there on.
// Usage: save_states <home> <first number> <last number> <characters of a transcript>
#include "models/Paths.h"
#include "storage/Log.h"
#include "storage/StoredFiles.h"
#include "storage/tests/NumberedState.h"

#include <QString>

#include <chrono>
#include <csignal>
#include <cstdlib>

int main(int argc, char** argv) {
    using namespace sayloft;

    if (argc != 5)
        return 2;
    std::signal(SIGXFSZ, SIG_IGN);
    fixPaths(QStringLiteral("/nowhere"), QString::fromLocal8Bit(argv[1]));
    mendStoredFiles();
    History history;
    for (int number = std::atoi(argv[2]); number <= std::atoi(argv[3]); ++number) {
        test::settingsOf(number).save();
        history.add(test::transcriptOf(number, std::atoi(argv[4])));
        logf(QStringLiteral("saved %1").arg(number));
    }
    KeptFile::waitForDisk(std::chrono::seconds(10));
}
