// SPDX-License-Identifier: MIT
// Starts as the program does, saves the settings and the history once, logs that and waits for the
// disk. What is saved is made from its number. A file may not become larger than its limit says,
// which is as if the disk were full from there on.
// Usage: save_once <home> <number> <characters of a transcript>
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

    if (argc != 4)
        return 2;
    std::signal(SIGXFSZ, SIG_IGN);
    fixPaths(QStringLiteral("/nowhere"), QString::fromLocal8Bit(argv[1]));
    const int number = std::atoi(argv[2]);
    mendStoredFiles();
    History history;
    test::settingsOf(number).save();
    history.add(test::transcriptOf(number, std::atoi(argv[3])));
    logf(QStringLiteral("saved %1").arg(number));
    KeptFile::waitForDisk(std::chrono::seconds(10));
}
